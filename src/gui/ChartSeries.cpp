#include "gui/ChartSeries.h"

#include <algorithm>

ChartSeries::ChartSeries(const wxString& name, const wxColour& colour, std::size_t count)
    : samples(count, 0), name(name), colour(colour) {}

void ChartSeries::Add(std::uint16_t value) {
    if (samples.empty())
        return;
    std::rotate(samples.begin(), samples.begin() + 1, samples.end());
    samples.back() = value;
}

std::uint16_t ChartSeries::Newest() const {
    return samples.empty() ? 0 : samples.back();
}

std::vector<ChartSeries> MakeCpuSeries() {
    return {ChartSeries("Apache", wxColour(128, 128, 255)),
            ChartSeries("MySQL", wxColour(255, 128, 128)),
            ChartSeries("Apache + MySQL", wxColour(200, 200, 200))};
}
