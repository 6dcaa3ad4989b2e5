#include "engine/models/ModelDefinition.h"

namespace engine {

double Transformation::Apply(double v) const {
    switch (kind) {
    case TransformationKind::None:
        return v;
    case TransformationKind::Log:
        return std::log10(c1 * v + c2);
    case TransformationKind::NegLog:
        return -std::log10(c1 * v + c2);
    case TransformationKind::Logit:
        return std::log10((v - c1) / (c2 - v));
    case TransformationKind::Exponential:
        return std::exp(c1 * v + c2);
    case TransformationKind::Power:
        return std::pow(c1 * v + c2, c3);
    }
    return v;
}

bool Transformation::Falls() const {
    switch (kind) {
    case TransformationKind::None:
        return false;
    case TransformationKind::NegLog:
        return c1 > 0;
    case TransformationKind::Logit:
        return c2 < c1;
    case TransformationKind::Power:
        return c1 * c3 < 0;
    default:
        return c1 < 0;
    }
}

double Transformation::Invert(double g) const {
    switch (kind) {
    case TransformationKind::None:
        return g;
    case TransformationKind::Log:
        return (std::pow(10, g) - c2) / c1;
    case TransformationKind::NegLog:
        return (std::pow(10, -g) - c2) / c1;
    case TransformationKind::Logit:
        return c2 - (c2 - c1) / (1 + std::pow(10, g));
    case TransformationKind::Exponential:
        return (std::log(g) - c2) / c1;
    case TransformationKind::Power:
        return (std::pow(g, 1 / c3) - c2) / c1;
    }
    return g;
}

std::vector<std::string> ModelDefinition::Classes() const {
    std::vector<std::string> classes;
    for (Term const &term : yTerms) {
        if (!term.IsLevel() || LevelOf(term.column).variable != LevelOf(yTerms.front().column).variable)
            return {};
        classes.push_back(LevelOf(term.column).text);
    }
    return classes;
}

} // namespace engine
