// SPDX-License-Identifier: MIT
#include "batch/results/Plots.h"

#include "batch/results/Modules.h"
#include "platform/image/WorkerPool.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace batch {

namespace {

std::string plain(const std::string& text)
{
    constexpr std::size_t longest = 60;
    std::string name = text.substr(0, longest);
    std::ranges::replace_if(
        name,
        [](unsigned char c) {
            return !(c >= 'a' && c <= 'z') && !(c >= 'A' && c <= 'Z') && !(c >= '0' && c <= '9') &&
                   c != '.' && c != '-';
        },
        '_');
    return name;
}

// Draws orders when enough of them have come together.
class PlotWriter {
public:
    PlotWriter() : write(plotModule()) {}

    void add(PlotOrder order)
    {
        constexpr std::size_t atOnce = 64;
        orders.push_back(std::move(order));
        if (orders.size() == atOnce)
            flush();
    }
    void flush()
    {
        image::parallelFor(static_cast<int>(orders.size()), [this](int i) {
            const std::string problem = write(orders[static_cast<std::size_t>(i)]);
            if (!problem.empty())
                throw RunError(problem);
        });
        orders.clear();
    }

private:
    WritePlot write;
    std::vector<PlotOrder> orders;
};

} // namespace

std::string resultName(std::uint32_t image, const Record& record)
{
    return std::to_string(image) + "-" + plain(std::filesystem::path(record.image).filename().string()) +
           "_" + std::to_string(record.facts.line + 1) + "-" + plain(record.line);
}

void writePlots(const std::filesystem::path& folder, const std::vector<FinishedUnit>& units,
                const Settings& settings)
{
    makeFolder(folder);
    PlotWriter writer;
    forEachLine(units, [&](std::uint32_t image, const LineRecords& records) {
        PlotOrder order;
        for (const Record* record : records)
            order.channels.push_back(*record);
        const Record::Facts& facts = order.channels.front().facts;
        order.path =
            folder / (resultName(image, order.channels.front()) + "_p" + std::to_string(facts.p + 1) + "_t" +
                      std::to_string(facts.t + 1) + "_z" + std::to_string(facts.z + 1) + "." +
                      plotFormatNames[static_cast<int>(settings.plots)]);
        order.logAxis = settings.logAxis;
        writer.add(std::move(order));
    });
    writer.flush();
}

} // namespace batch
