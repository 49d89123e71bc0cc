#include "tolerance.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <array>
#include <cmath>

namespace survey {
namespace {

using Per = Tolerance::Per;

constexpr double siteFactor = 5; // mm a root of set-ups, usual on building sites

constexpr std::array<ToleranceClass, 4> classes{{{"Ordinary 24 mm √K", {Per::RootKm, 0, 24}},
                                                 {"Accurate 12 mm √K", {Per::RootKm, 0, 12}},
                                                 {"Precise 6 mm √K", {Per::RootKm, 0, 6}},
                                                 {"Site 5 mm √n", {Per::RootSetups, 0, siteFactor}}}};

std::string figure(double value) {
    return basic::format(value, basic::pattern("0.###"));
}

std::optional<double> figureIn(std::string_view text) {
    constexpr std::size_t longest = 12; // no tolerance is longer, and none of that length overflows
    if (text.size() > longest || text.find('e') != std::string_view::npos || !basic::isNumber(text))
        return std::nullopt;
    const double value = basic::val(text);
    return value >= 0 ? std::optional(value) : std::nullopt;
}

std::string leading(const Tolerance& tolerance) {
    const std::string constant = tolerance.constant == 0 ? "" : figure(tolerance.constant) + " + ";
    return constant + figure(tolerance.factor) + " mm √";
}

} // namespace

std::span<const ToleranceClass> toleranceClasses() {
    return classes;
}

std::optional<Tolerance> toleranceFrom(std::string_view typed) {
    std::string text = basic::lower(basic::trim(typed));
    if (text == "none") return Tolerance{Per::None, 0, 0};
    if (const std::size_t root = text.find("√"); root != std::string::npos)
        text.replace(root, std::string_view("√").size(), "r");
    const std::size_t root = text.find('r');
    if (root == std::string::npos) {
        const std::optional<double> fixed = figureIn(text);
        return fixed ? std::optional(Tolerance{Per::Fixed, *fixed, 0}) : std::nullopt;
    }
    const std::string_view all = text;
    const std::string_view unit = all.substr(root + 1);
    if (unit != "k" && unit != "n") return std::nullopt;
    const std::size_t plus = all.find('+');
    const bool sum = plus != std::string_view::npos && plus < root;
    const std::optional<double> constant = sum ? figureIn(all.substr(0, plus)) : 0.0;
    const std::size_t begin = sum ? plus + 1 : 0;
    const std::optional<double> factor = figureIn(all.substr(begin, root - begin));
    if (!constant || !factor) return std::nullopt;
    return Tolerance{unit == "k" ? Per::RootKm : Per::RootSetups, *constant, *factor};
}

std::string toleranceText(const Tolerance& tolerance) {
    if (tolerance.per == Per::None) return "none";
    if (tolerance.per == Per::Fixed) return basic::plainText(tolerance.constant);
    return (tolerance.constant == 0 ? "" : basic::plainText(tolerance.constant) + '+') +
           basic::plainText(tolerance.factor) + (tolerance.per == Per::RootKm ? "rK" : "rN");
}

Allowed allowedBy(const Tolerance& tolerance, std::optional<double> lengthKm, int setups) {
    const auto byRoot = [](const Tolerance& rule, double measure) {
        return rule.constant + rule.factor * std::sqrt(measure);
    };
    switch (tolerance.per) {
    case Per::None:
        return {};
    case Per::Fixed:
        return {tolerance.constant, {}};
    case Per::RootSetups:
        return {byRoot(tolerance, setups), leading(tolerance) + std::to_string(setups)};
    case Per::RootKm:
        break;
    }
    if (lengthKm) return {byRoot(tolerance, *lengthKm), leading(tolerance) + figure(*lengthKm) + " km"};
    const Tolerance site{Per::RootSetups, 0, siteFactor};
    return {byRoot(site, setups), leading(site) + std::to_string(setups) + ", no length"};
}

bool isWithin(double misclosure, double allowed) {
    return std::round(std::abs(misclosure) * 100) <= std::round(allowed * 100);
}

} // namespace survey
