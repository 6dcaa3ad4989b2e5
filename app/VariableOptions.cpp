#include "app/VariableOptions.h"

#include "app/Failure.h"
#include "platform/text/VqString.h"

#include <algorithm>
#include <charconv>
#include <regex>
#include <sstream>

std::vector<std::string> NamesIn(std::vector<std::string> const &lists) {
    std::vector<std::string> names;
    for (std::string const &list : lists) {
        bool quoted = false;
        char before = ',';
        std::string name;
        for (char const letter : list + ',') {
            if (letter == '"') {
                // Within quotes a doubled one is a quote.
                if (before == '"' && !quoted)
                    name += '"';
                quoted = !quoted;
            } else if (letter == ',' && !quoted) {
                if (name.empty())
                    throw UsageError("\"" + list + "\" holds an empty name");
                names.push_back(std::move(name));
                name.clear();
            } else {
                name += letter;
            }
            before = letter;
        }
        if (quoted)
            throw UsageError("A quote in \"" + list + "\" is not closed");
    }
    return names;
}

namespace {

std::pair<std::string, engine::VariableTransformation> TransformationIn(std::string const &text) {
    using Transformation = engine::VariableTransformation;
    static std::map<std::string, Transformation> const kinds = {
        {"log", {Transformation::Log, 1, 0, 1}},       {"neglog", {Transformation::NegLog, 1, 0, 1}},
        {"logit", {Transformation::Logit, 0, 1, 1}},   {"exp", {Transformation::Exponential, 1, 0, 1}},
        {"power", {Transformation::Power, 1, 0, 0.5}}, {"none", {}}};
    std::size_t const equals = text.rfind('=');
    std::vector<std::string> parts;
    std::istringstream stream(equals == std::string::npos ? std::string() : text.substr(equals + 1));
    for (std::string part; std::getline(stream, part, ':');)
        parts.push_back(part);
    if (parts.empty() || !kinds.contains(parts[0]) || parts.size() > 4)
        throw UsageError("\"" + text +
                         "\" is no transformation such as ash=log, ash=logit:0:100 or ash=power:1:0:0.5; "
                         "there are log, neglog, logit, exp and power");
    Transformation transformation = kinds.at(parts[0]);
    double *const constants[] = {&transformation.c1, &transformation.c2, &transformation.c3};
    for (std::size_t i = 1; i < parts.size(); ++i) {
        char *end = nullptr;
        *constants[i - 1] = VqString::vqstrtod(parts[i].c_str(), &end);
        if (end == parts[i].c_str() || *end != '\0')
            throw UsageError("\"" + parts[i] + "\" in \"" + text + "\" is no number");
    }
    return {text.substr(0, equals), transformation};
}

} // namespace

std::map<std::string, engine::VariableTransformation> TransformationsIn(std::vector<std::string> const &texts) {
    std::map<std::string, engine::VariableTransformation> transformations;
    for (std::string const &text : texts)
        if (!transformations.insert(TransformationIn(text)).second)
            throw UsageError("The transformation in \"" + text + "\" is the second one of its variable");
    return transformations;
}

void SetScaling(engine::ModelRequest &request, std::vector<std::string> const &texts) {
    static std::map<std::string, engine::ModelRequest::Scaling> const kinds = {
        {"uv", engine::ModelRequest::UnitVariance},
        {"ctr", engine::ModelRequest::Centred},
        {"par", engine::ModelRequest::Pareto},
        {"none", engine::ModelRequest::None}};
    for (std::string const &text : texts) {
        std::size_t const equals = text.rfind('=');
        bool const isSide = equals == text.npos && (text.starts_with("X:") || text.starts_with("Y:"));
        auto const kind = kinds.find(text.substr(isSide ? 2 : equals == text.npos ? 0 : equals + 1));
        if (kind == kinds.end())
            throw UsageError("\"" + text +
                             "\" is no scaling such as uv, X:uv, Y:ctr or ash=par; there are uv, ctr, par and none");
        if (equals != text.npos)
            request.scalings[text.substr(0, equals)] = kind->second;
        else if (isSide && text[0] == 'Y')
            request.responseScaling = kind->second;
        else
            request.scaling = kind->second;
    }
}

std::map<std::string, double> WeightsIn(std::vector<std::string> const &texts) {
    std::map<std::string, double> weights;
    for (std::string const &text : texts) {
        std::size_t const equals = text.rfind('=');
        char *end = nullptr;
        double const weight = equals == text.npos ? 0 : VqString::vqstrtod(text.c_str() + equals + 1, &end);
        if (!end || end == text.c_str() + equals + 1 || *end != '\0')
            throw UsageError("\"" + text + "\" is no weight of a variable such as ash=0.5");
        if (!weights.emplace(text.substr(0, equals), weight).second)
            throw UsageError("The weight in \"" + text + "\" is the second one of its variable");
    }
    return weights;
}

std::pair<std::string, std::vector<std::string>> BlockIn(std::string const &text) {
    std::size_t const equals = text.find('=');
    if (equals == text.npos || equals == 0 || equals + 1 == text.size())
        throw UsageError("\"" + text + "\" is no block of variables such as process=flow,temperature");
    return {text.substr(0, equals), NamesIn({text.substr(equals + 1)})};
}

engine::VariableLags LagsIn(std::string const &text) {
    engine::VariableLags lags;
    std::size_t const colon = text.rfind(':');
    char const *const end = text.data() + text.size();
    auto read = std::from_chars(colon == text.npos ? end : text.data() + colon + 1, end, lags.first);
    lags.last = lags.first;
    if (read.ec == std::errc() && read.ptr != end && *read.ptr == '-')
        read = std::from_chars(read.ptr + 1, end, lags.last);
    if (read.ec != std::errc() || read.ptr != end || colon == 0 || lags.first < 1 || lags.last < lags.first)
        throw UsageError("\"" + text + "\" is no variable with its lags such as feed:3, feed:1-5 or all:1-3");
    if (lags.variable = text.substr(0, colon); lags.variable == "all")
        lags.variable.clear();
    return lags;
}

void AddHierarchyItem(engine::HierarchyRequest &request, std::string const &text) {
    static std::map<std::string, VariableInfo::Result> const kinds = {
        {"t", VariableInfo::Score},          {"to", VariableInfo::OrthogonalScore}, {"YPred", VariableInfo::PredictedY},
        {"XVarRes", VariableInfo::Residual}, {"DModX", VariableInfo::Distance},     {"T2", VariableInfo::T2}};
    static std::regex const form("M([0-9]{1,6})\\.([A-Za-z0-9]+)(?:\\[([1-9][0-9]{0,5})\\])?");
    std::smatch parts;
    if (!std::regex_match(text, parts, form)) {
        request.variables.push_back(text);
        return;
    }
    auto const kind = kinds.find(parts[2]);
    if (kind == kinds.end())
        throw UsageError("\"" + text +
                         "\" is no result of a model such as M1.t, M1.t[2] or M2.YPred; there are t, to, "
                         "YPred, XVarRes, DModX and T2");
    request.results.push_back({std::stoi(parts[1]), kind->second, parts[3].matched ? std::stoi(parts[3]) : 0});
}

std::vector<std::string> FactorsIn(std::string const &text) {
    std::vector<std::string> factors;
    std::istringstream stream(text + '*');
    for (std::string factor; std::getline(stream, factor, '*');)
        factors.push_back(factor);
    if (factors.size() < 2 || std::ranges::find(factors, "") != factors.end())
        throw UsageError("\"" + text + "\" is no product of variables such as width*width or width*length");
    return factors;
}
