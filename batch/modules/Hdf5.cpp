// SPDX-License-Identifier: MIT
// The module that writes samples as HDF5: all profiles one after the other in columns, and a table of where
// each one begins. The same profiles make the same bytes.
#include "batch/results/Modules.h"

#include <hdf5.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using batch::Record;

// An identifier of the library, closed with its own function.
class Handle {
public:
    Handle(hid_t id, herr_t (*close)(hid_t)) : id(id), close(close)
    {
        if (id < 0)
            throw std::runtime_error("the HDF5 library refused");
    }
    ~Handle() { close(id); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    operator hid_t() const { return id; }

private:
    hid_t id;
    herr_t (*close)(hid_t);
};

void check(herr_t status)
{
    if (status < 0)
        throw std::runtime_error("the HDF5 library could not write");
}

Handle emptySpace()
{
    const hsize_t none = 0, unlimited = H5S_UNLIMITED;
    return {H5Screate_simple(1, &none, &unlimited), H5Sclose};
}

Handle chunks(hsize_t count)
{
    constexpr unsigned level = 1;
    const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
    check(H5Pset_chunk(properties, 1, &count));
    check(H5Pset_shuffle(properties));
    check(H5Pset_deflate(properties, level));
    check(H5Pset_obj_track_times(properties, false));
    return {properties, H5Pclose};
}

// A column of the file that grows; its values are written some thousands at a time.
template<class Value> class Column {
public:
    Column(hid_t file, const char* name, hid_t type)
        : type(type), links(H5Pcreate(H5P_LINK_CREATE), H5Pclose), space(emptySpace()),
          properties(chunks(atOnce)),
          set((H5Pset_create_intermediate_group(links, 1),
               H5Dcreate2(file, name, type, space, links, properties, H5P_DEFAULT)),
              H5Dclose)
    {
    }
    void add(Value value)
    {
        waiting.push_back(std::move(value));
        if (waiting.size() == atOnce)
            flush();
    }
    void flush()
    {
        const hsize_t count = waiting.size(), end = written + count;
        if (count == 0)
            return;
        check(H5Dset_extent(set, &end));
        const Handle all(H5Dget_space(set), H5Sclose), some(H5Screate_simple(1, &count, nullptr), H5Sclose);
        check(H5Sselect_hyperslab(all, H5S_SELECT_SET, &written, nullptr, &count, nullptr));
        check(H5Dwrite(set, type, some, all, H5P_DEFAULT, waiting.data()));
        written = end;
        waiting.clear();
    }

private:
    static constexpr hsize_t atOnce = 1 << 14;
    hid_t type;
    Handle links, space, properties, set;
    std::vector<Value> waiting;
    hsize_t written = 0;
};

Handle textType()
{
    const hid_t type = H5Tcopy(H5T_C_S1);
    check(H5Tset_size(type, H5T_VARIABLE));
    check(H5Tset_cset(type, H5T_CSET_UTF8));
    return {type, H5Tclose};
}

// Texts; many profiles in a row have the same image.
class TextColumn {
public:
    TextColumn(hid_t file, const char* name) : type(textType()), column(file, name, type) {}
    void add(const std::string& text)
    {
        texts.push_back(text);
        if (texts.size() == atOnce)
            flush();
    }
    void flush()
    {
        for (const std::string& text : texts)
            column.add(text.c_str());
        column.flush();
        texts.clear();
    }

private:
    static constexpr std::size_t atOnce = 1 << 12;
    Handle type;
    Column<const char*> column;
    std::vector<std::string> texts;
};

class SampleFile {
public:
    explicit SampleFile(hid_t file)
        : image(file, "profiles/image"), line(file, "profiles/line"), z(file, "profiles/z", H5T_NATIVE_INT32),
          t(file, "profiles/t", H5T_NATIVE_INT32), p(file, "profiles/p", H5T_NATIVE_INT32),
          channel(file, "profiles/channel", H5T_NATIVE_INT32),
          wavelength(file, "profiles/wavelength_nm", H5T_NATIVE_FLOAT),
          length(file, "profiles/length_um", H5T_NATIVE_FLOAT),
          step(file, "profiles/step_um", H5T_NATIVE_FLOAT),
          first(file, "profiles/first_sample", H5T_NATIVE_UINT64),
          samples(file, "profiles/samples", H5T_NATIVE_UINT64),
          value(file, "samples/value", H5T_NATIVE_DOUBLE), x(file, "samples/x_px", H5T_NATIVE_FLOAT),
          y(file, "samples/y_px", H5T_NATIVE_FLOAT), stageX(file, "samples/stage_x_um", H5T_NATIVE_FLOAT),
          stageY(file, "samples/stage_y_um", H5T_NATIVE_FLOAT),
          pixels(file, "samples/pixels", H5T_NATIVE_INT32)
    {
    }
    void add(const Record& record)
    {
        const Record::Facts& facts = record.facts;
        const auto count = record.values.size();
        image.add(record.image);
        line.add(record.line);
        z.add(facts.z + 1);
        t.add(facts.t + 1);
        p.add(facts.p + 1);
        channel.add(facts.w + 1);
        wavelength.add(facts.wavelength);
        length.add(facts.length);
        step.add(
            static_cast<float>(facts.length / (facts.band ? facts.pixelLength : static_cast<double>(count))));
        first.add(total);
        samples.add(count);
        total += count;
        for (std::size_t i = 0; i < count; ++i) {
            value.add(record.exact.empty() ? double{record.values[i]} : record.exact[i]);
            x.add(record.xPixels[i]);
            y.add(record.yPixels[i]);
            stageX.add(record.xStage[i]);
            stageY.add(record.yStage[i]);
            pixels.add(record.counts.empty() ? 1 : record.counts[i]);
        }
    }
    void flush()
    {
        for (TextColumn* column : {&image, &line})
            column->flush();
        for (Column<std::int32_t>* column : {&z, &t, &p, &channel, &pixels})
            column->flush();
        for (Column<float>* column : {&wavelength, &length, &step, &x, &y, &stageX, &stageY})
            column->flush();
        for (Column<std::uint64_t>* column : {&first, &samples})
            column->flush();
        value.flush();
    }

private:
    TextColumn image, line;
    Column<std::int32_t> z, t, p, channel;
    Column<float> wavelength, length, step;
    Column<std::uint64_t> first, samples;
    Column<double> value;
    Column<float> x, y, stageX, stageY;
    Column<std::int32_t> pixels;
    std::uint64_t total = 0;
};

void writeSamples(const std::string& path, const std::vector<batch::FinishedUnit>& units)
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr); // failures are told by our own sentence
    const Handle file(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT), H5Fclose);
    SampleFile samples(file);
    for (const batch::FinishedUnit& unit : units) {
        batch::RecordCursor cursor((*unit.files)[batch::RecordsPart], unit.ranges[batch::RecordsPart]);
        while (const Record* record = cursor.next())
            samples.add(*record);
    }
    samples.flush();
    check(H5Fflush(file, H5F_SCOPE_GLOBAL));
}

} // namespace

// C linkage for a plain name alone: program and module are both of this C++.
// NOLINTNEXTLINE(clang-diagnostic-return-type-c-linkage)
extern "C" std::string batchWriteSamples(const std::filesystem::path& path,
                                         const std::vector<batch::FinishedUnit>& units)
{
    try {
        batch::StagedFile file(path);
        writeSamples(file.temporaryName(), units);
        file.commit();
        return {};
    } catch (const batch::RunError& error) {
        return error.what();
    } catch (const std::exception& error) {
        return path.string() + " cannot be written: " + error.what() + ".";
    }
}
