// SPDX-License-Identifier: MIT
#include "samples/TiffWriter.h"

#include "samples/Metadata.h"

#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace sample {

namespace {

constexpr std::uint32_t imageJCountsTag = 50838, imageJDataTag = 50839;
constexpr int stripBytes = 65536;

std::string lastTiffError; // what libtiff said last, without the file's name

void keepTiffError(const char*, const char* format, va_list arguments)
{
    char text[400];
    std::vsnprintf(text, sizeof text, format, arguments);
    lastTiffError = text;
    while (!lastTiffError.empty() && (lastTiffError.back() == '.' || lastTiffError.back() == '\n'))
        lastTiffError.pop_back();
}

// Files under temporary names, which are removed again unless they were published.
class Drafts {
public:
    explicit Drafts(const FileSet& set)
    {
        for (const OutputFile& file : set.files)
            add(file.path);
        if (!set.companion.path.empty())
            add(set.companion.path);
    }
    Drafts(const Drafts&) = delete;
    Drafts& operator=(const Drafts&) = delete;
    ~Drafts()
    {
        std::error_code ignored;
        for (const auto& [draft, path] : files)
            std::filesystem::remove(draft, ignored);
    }

    const std::filesystem::path& draft(std::size_t i) const { return files[i].first; }

    void publish()
    {
        for (const auto& [draft, path] : files) {
            std::error_code error;
            std::filesystem::rename(draft, path, error);
            if (error)
                throw WriteError("Cannot write " + path.string() + ": " + error.message());
        }
        files.clear();
    }

private:
    void add(const std::filesystem::path& path)
    {
        const std::string name = '.' + path.filename().string() + '.' + std::to_string(getpid()) + ".part";
        files.emplace_back(path.parent_path() / name, path);
    }
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> files;
};

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffPointer = std::unique_ptr<TIFF, CloseTiff>;

// One level of one page: its size and the values of its samples (one, or three for RGB).
struct Level {
    int width = 0, height = 0;
    std::vector<std::vector<double>> samples;
};

class FileWriter {
public:
    FileWriter(const Options& options, const std::filesystem::path& draft, std::string name)
        : options(options), name(std::move(name))
    {
        const std::string mode =
            std::string("w") + (options.bigEndian ? "b" : "l") + (options.bigTiff ? "8" : "4");
        lastTiffError.clear();
        tiff.reset(TIFFOpen(draft.c_str(), mode.c_str()));
        if (lastTiffError.starts_with(draft.string() + ": "))
            lastTiffError.erase(0, draft.string().size() + 2);
        check(tiff != nullptr);
    }

    void writePage(const std::vector<Level>& levels, const std::string& description, bool first)
    {
        std::vector<toff_t> subDirectories(levels.size() - 1, 0);
        for (std::size_t k = 0; k < levels.size(); ++k) {
            setShape(levels[k]);
            if (k > 0)
                TIFFSetField(tiff.get(), TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
            else if (!subDirectories.empty())
                TIFFSetField(tiff.get(), TIFFTAG_SUBIFD, static_cast<int>(subDirectories.size()),
                             subDirectories.data());
            if (k == 0)
                setDescription(description, first);
            options.tile ? writeTiles(levels[k]) : writeStrips(levels[k]);
            check(TIFFWriteDirectory(tiff.get()));
        }
    }

    void finish()
    {
        check(TIFFFlush(tiff.get()));
        tiff.reset();
    }

private:
    void check(bool ok) const
    {
        if (!ok)
            throw WriteError("Cannot write " + name + (lastTiffError.empty() ? "" : ": " + lastTiffError));
    }

    template<typename... Values> void set(std::uint32_t tag, Values... values)
    {
        check(TIFFSetField(tiff.get(), tag, values...) == 1);
    }

    int samplesPerPage() const { return options.samplesPerPixel(); }
    bool interleaved() const { return options.rgb == RgbStorage::Interleaved; }
    int samplesPerBlock() const { return interleaved() ? 3 : 1; }

    int sampleFormat() const
    {
        switch (options.pixelType) {
        case PixelType::Int8:
        case PixelType::Int16:
        case PixelType::Int32:
            return SAMPLEFORMAT_INT;
        case PixelType::Float:
        case PixelType::Double:
            return SAMPLEFORMAT_IEEEFP;
        default:
            return SAMPLEFORMAT_UINT;
        }
    }

    int predictor() const
    {
        const int bits = bitsOf(options.pixelType);
        if (options.noPredictor || !options.compression->predictor || bits == 1)
            return PREDICTOR_NONE;
        if (sampleFormat() != SAMPLEFORMAT_IEEEFP)
            return PREDICTOR_HORIZONTAL;
        // libtiff 4.5 orders the bytes wrongly when it differences floats for a file of the other byte order.
        return options.bigEndian == (std::endian::native == std::endian::big) ? PREDICTOR_FLOATINGPOINT
                                                                              : PREDICTOR_NONE;
    }

    void setShape(const Level& level)
    {
        const bool rgb = options.rgb != RgbStorage::None;
        const int bits = bitsOf(options.pixelType), scheme = options.compression->scheme;
        set(TIFFTAG_IMAGEWIDTH, level.width);
        set(TIFFTAG_IMAGELENGTH, level.height);
        set(TIFFTAG_BITSPERSAMPLE, bits);
        set(TIFFTAG_SAMPLEFORMAT, sampleFormat());
        set(TIFFTAG_SAMPLESPERPIXEL, samplesPerPage());
        set(TIFFTAG_PHOTOMETRIC, rgb ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
        set(TIFFTAG_PLANARCONFIG,
            options.rgb == RgbStorage::Planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
        set(TIFFTAG_COMPRESSION, scheme);
        if (predictor() != PREDICTOR_NONE)
            set(TIFFTAG_PREDICTOR, predictor());
        if (scheme == COMPRESSION_WEBP)
            set(TIFFTAG_WEBP_LOSSLESS, 1);
        if (options.tile) {
            set(TIFFTAG_TILEWIDTH, options.tile);
            set(TIFFTAG_TILELENGTH, options.tile);
        } else {
            set(TIFFTAG_ROWSPERSTRIP, rowsPerStrip(level));
        }
    }

    int rowsPerStrip(const Level& level) const
    {
        const int rowBytes = (level.width * bitsOf(options.pixelType) * samplesPerBlock() + 7) / 8;
        int rows = options.rowsPerStrip ? options.rowsPerStrip : std::max(1, stripBytes / rowBytes);
        rows = std::min(rows, level.height);
        // JPEG takes strips of whole blocks.
        return options.compression->scheme == COMPRESSION_JPEG ? (rows + 7) / 8 * 8 : rows;
    }

    void setDescription(const std::string& description, bool first)
    {
        if (first && !description.empty())
            set(TIFFTAG_IMAGEDESCRIPTION, description.c_str());
        if (first)
            set(TIFFTAG_SOFTWARE, programVersion);
        if (options.noCalibration || options.flavor == Flavor::Plain)
            return;
        // ImageJ wants pixels per micron; TIFF itself knows centimetres.
        const bool imageJ = options.flavor == Flavor::ImageJ;
        const float resolution = static_cast<float>((imageJ ? 1 : 10000) / pixelMicrons);
        set(TIFFTAG_RESOLUTIONUNIT, imageJ ? RESUNIT_NONE : RESUNIT_CENTIMETER);
        set(TIFFTAG_XRESOLUTION, resolution);
        set(TIFFTAG_YRESOLUTION, resolution);
        if (imageJ && first && options.channels > 1)
            setImageJBinary();
    }

    void setImageJBinary()
    {
        static const TIFFFieldInfo fields[] = {
            {imageJCountsTag, TIFF_VARIABLE2, TIFF_VARIABLE2, TIFF_LONG, FIELD_CUSTOM, 1, 1,
             const_cast<char*>("IJMetadataByteCounts")},
            {imageJDataTag, TIFF_VARIABLE2, TIFF_VARIABLE2, TIFF_BYTE, FIELD_CUSTOM, 1, 1,
             const_cast<char*>("IJMetadata")},
        };
        TIFFMergeFieldInfo(tiff.get(), fields, 2);
        const ImageJBinary binary = imageJBinary(options);
        set(imageJCountsTag, static_cast<std::uint32_t>(binary.counts.size()), binary.counts.data());
        set(imageJDataTag, static_cast<std::uint32_t>(binary.data.size()), binary.data.data());
    }

    // Row y of a block of pixels that may reach beyond the image, where it repeats the last pixel.
    void appendBlockRow(const Level& level, int x, int y, int width, int sample, std::vector<std::byte>& out)
    {
        const int samples = samplesPerBlock();
        y = std::min(y, level.height - 1);
        row.clear();
        for (int i = 0; i < width; ++i) {
            const std::size_t at =
                static_cast<std::size_t>(y) * level.width + std::min(x + i, level.width - 1);
            for (int s = 0; s < samples; ++s)
                row.push_back(level.samples[sample + s][at]);
        }
        encodeRow(row, options.pixelType, out);
    }

    void writeStrips(const Level& level)
    {
        const int rows = rowsPerStrip(level);
        std::uint32_t strip = 0;
        for (int sample = 0; sample < samplesPerPage(); sample += samplesPerBlock()) {
            for (int y = 0; y < level.height; y += rows) {
                block.clear();
                for (int i = y; i < std::min(y + rows, level.height); ++i)
                    appendBlockRow(level, 0, i, level.width, sample, block);
                check(TIFFWriteEncodedStrip(tiff.get(), strip++, block.data(),
                                            static_cast<tmsize_t>(block.size())) >= 0);
            }
        }
    }

    void writeTiles(const Level& level)
    {
        std::uint32_t tile = 0;
        for (int sample = 0; sample < samplesPerPage(); sample += samplesPerBlock()) {
            for (int y = 0; y < level.height; y += options.tile) {
                for (int x = 0; x < level.width; x += options.tile) {
                    block.clear();
                    for (int i = 0; i < options.tile; ++i)
                        appendBlockRow(level, x, y + i, options.tile, sample, block);
                    check(TIFFWriteEncodedTile(tiff.get(), tile++, block.data(),
                                               static_cast<tmsize_t>(block.size())) >= 0);
                }
            }
        }
    }

    const Options& options;
    std::string name; // as the user knows it
    TiffPointer tiff;
    std::vector<double> row;
    std::vector<std::byte> block;
};

std::vector<Level> levelsOf(const Options& options, const Plane& plane, Pattern& pattern)
{
    std::vector<Level> levels(options.pyramidLevels + 1);
    for (int k = 0; k <= options.pyramidLevels; ++k) {
        levels[k].width = options.size.width >> k;
        levels[k].height = options.size.height >> k;
    }
    for (int sample = 0; sample < options.samplesPerPixel(); ++sample) {
        Plane at = plane;
        at.c += sample;
        levels[0].samples.push_back(pattern.values(at));
        for (int k = 1; k <= options.pyramidLevels; ++k)
            levels[k].samples.push_back(pattern.reduced(levels[0].samples.back(), k));
    }
    return levels;
}

std::string descriptionOf(const Options& options, const FileSet& set, std::size_t file)
{
    switch (options.flavor) {
    case Flavor::Ome:
        return options.companion ? binaryOnlyXml(set, set.files[file])
                                 : omeXml(options, set, set.files[file]);
    case Flavor::ImageJ:
        return imageJDescription(options);
    case Flavor::Plain:
        break;
    }
    return {};
}

void writeCompanion(const Options& options, const FileSet& set, const std::filesystem::path& draft)
{
    std::ofstream out(draft, std::ios::binary);
    out << omeXml(options, set, set.companion);
    out.close();
    if (!out)
        throw WriteError("Cannot write " + set.companion.path.string() + ": " + std::strerror(errno));
}

} // namespace

void writeFiles(const Options& options, const FileSet& set, Pattern& pattern)
{
    if (!TIFFIsCODECConfigured(static_cast<std::uint16_t>(options.compression->scheme)))
        throw WriteError(std::string("This TIFF library has no ") + options.compression->name +
                         " compression");
    for (const OutputFile& file : set.files) {
        if (std::filesystem::is_directory(file.path))
            throw WriteError("Cannot write " + file.path.string() + ": it is a directory");
    }
    TIFFSetErrorHandler(keepTiffError);
    TIFFSetWarningHandler(nullptr);
    Drafts drafts(set);
    std::vector<std::unique_ptr<FileWriter>> writers;
    for (std::size_t i = 0; i < set.files.size(); ++i)
        writers.push_back(std::make_unique<FileWriter>(options, drafts.draft(i), set.files[i].path.string()));
    for (const Page& page : set.pages) {
        const bool first = page.directory == 0;
        writers[page.file]->writePage(levelsOf(options, page.plane, pattern),
                                      first ? descriptionOf(options, set, page.file) : "", first);
    }
    for (auto& writer : writers)
        writer->finish();
    if (options.companion)
        writeCompanion(options, set, drafts.draft(set.files.size()));
    drafts.publish();
}

} // namespace sample
