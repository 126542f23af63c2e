#pragma once

#include <wx/colour.h>
#include <wx/string.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// One line of the statistics chart: a fixed number of samples, oldest first, all 0 at creation.
// Values are percentages; a value above 100 is kept as given.
struct ChartSeries {
    ChartSeries(const wxString& name, const wxColour& colour, std::size_t count = 100);

    // Drops the oldest sample and puts value last.
    void Add(std::uint16_t value);
    // The last sample, 0 for a series without samples.
    std::uint16_t Newest() const;

    std::vector<std::uint16_t> samples;
    wxString name;
    wxColour colour;
};

// The three series of the CPU chart, in this order: Apache, MySQL, Apache + MySQL.
std::vector<ChartSeries> MakeCpuSeries();
