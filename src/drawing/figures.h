#pragma once

#include <string>

// The figures of a drawing as texts.

namespace drawing {

/// 1:horizontal by 1:vertical. A scale of 0 or less is none.
struct Scale {
    double horizontal = 1000;
    double vertical = 100;

    [[nodiscard]] double perMetre() const { return 1000 / horizontal; } ///< millimetres of paper
    [[nodiscard]] double levelPerMetre() const { return 1000 / vertical; }
    friend bool operator==(const Scale&, const Scale&) = default;
};

[[nodiscard]] std::string scaleText(Scale scale);         ///< "1:1000 by 1:100", "1:100" when both are equal
[[nodiscard]] std::string exaggerationText(double times); ///< "V x10", "V x2.5"
[[nodiscard]] std::string chainageText(double metres);    ///< "01-250", "01-250.5"
[[nodiscard]] std::string levelText(double level);        ///< "101.235"
[[nodiscard]] std::string offsetText(double offset);      ///< "-3.15", "0"
[[nodiscard]] std::string datumText(double datum);        ///< "Datum 95.000"

/// A step of 1, 2 or 5 times a power of ten that is at least `least`.
[[nodiscard]] double roundStep(double least);

} // namespace drawing
