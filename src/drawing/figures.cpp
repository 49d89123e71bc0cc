#include "figures.h"

#include "basic/numbers.h"

#include <cmath>

namespace drawing {

std::string scaleText(Scale scale) {
    const std::string horizontal = "1:" + basic::format(scale.horizontal, basic::pattern("#0.##"));
    if (scale.horizontal == scale.vertical) return horizontal;
    return horizontal + " by 1:" + basic::format(scale.vertical, basic::pattern("#0.##"));
}

std::string exaggerationText(double times) {
    return "V x" + (times < 10 ? basic::format(times, basic::pattern("#0.##"))
                               : basic::format(std::round(times), basic::pattern("#0")));
}

std::string chainageText(double metres) {
    const double rounded = std::round(metres * 1000) / 1000;
    const double kilometres = std::floor(rounded / 1000);
    return basic::format(kilometres, basic::pattern("#00")) + "-" +
           basic::format(rounded - kilometres * 1000, basic::pattern("000.###"));
}

std::string levelText(double level) {
    return basic::format(level, basic::pattern("#0.000"));
}

std::string offsetText(double offset) {
    return basic::format(offset, basic::pattern("#0.###"));
}

std::string datumText(double datum) {
    return "Datum " + levelText(datum);
}

double roundStep(double least) {
    double step = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (step * factor >= least * (1 - 1e-9)) return step * factor;
    return step * 10;
}

} // namespace drawing
