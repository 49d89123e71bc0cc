#pragma once

#include "survey/runs.h"

#include <cstdio>

/// Sections as "to row>row set-ups found misclosure verdict", divided by "|".
inline std::string textOf(const std::vector<survey::RunSection>& sections) {
    std::string all;
    for (const survey::RunSection& section : sections) {
        char text[200];
        std::snprintf(text, sizeof text, "%s %d>%d %d %.3f ", section.to.c_str(), section.fromRow,
                      section.toRow, section.setups, section.found);
        if (!all.empty()) all += '|';
        all += text;
        if (section.misclosureMm) {
            std::snprintf(text, sizeof text, "%+.1f ", *section.misclosureMm);
            all += text;
        }
        all += word(section.verdict);
    }
    return all;
}
