#include "app/ContributionText.h"

#include "app/Failure.h"

#include <algorithm>
#include <sstream>

namespace {

using Vector = ProjectVector;
using Weight = WeightTypeE;

constexpr char const *notUsed = "not used by this statistic";

// Walks the fields of a text.
class Cursor {
public:
    Cursor(std::string const &name, std::string const &text) : m_name(name), m_text(text) {}

    // Up to the next comma.
    std::string Field(std::string const &what) {
        if (m_at > m_text.size())
            throw Problem(ExceptionMessage::translate("The arguments of {1} end before {2}.") % m_name % what);
        return Take(m_text.find(',', m_at));
    }
    // A count and so many fields, or so many points of batches: "name$,maturity", whose name may hold commas.
    std::string Counted(std::string const &what, bool ofPoints) {
        std::string const text = Field("the count of its " + what);
        auto const count = static_cast<std::ptrdiff_t>(NumberIn(text).value_or(0));
        std::string const rest = m_text.substr(std::min(m_at, m_text.size()));
        auto const held = m_at > m_text.size() ? 0
                          : ofPoints           ? std::ranges::count(rest, '$')
                                               : std::ranges::count(rest, ',') + 1;
        if (count > held)
            throw Problem(ExceptionMessage::translate("{1} is asked with {2} {3}, but its arguments hold no more than "
                                                      "{4} behind that count.") %
                          m_name % text % what % std::to_string(held));
        std::string all = text;
        for (std::ptrdiff_t i = 0; i < count; ++i)
            all += "," + (ofPoints ? Point() : Field(what));
        return all;
    }
    std::string Rest() { return m_at > m_text.size() ? std::string() : Take(std::string::npos); }

private:
    std::string Point() {
        std::size_t const dollar = m_text.find('$', m_at);
        return Take(dollar == std::string::npos ? dollar : m_text.find(',', std::min(dollar + 2, m_text.size())));
    }
    std::string Take(std::size_t end) {
        std::size_t const begin = m_at;
        m_at = end == std::string::npos ? m_text.size() + 1 : end + 1;
        return m_text.substr(begin, end == std::string::npos ? end : end - begin);
    }

    std::string const &m_name;
    std::string const &m_text;
    std::size_t m_at = 0;
};

char const *NameOf(Weight::WeightType weight) {
    switch (weight) {
    case Weight::P:
        return "loading p";
    case Weight::WStar:
        return "weight w*";
    case Weight::PO:
        return "orthogonal loading po";
    case Weight::RX:
        return "root of the explained variation of the variable";
    case Weight::RY:
        return "root of the explained variation of the response";
    case Weight::CoeffCS:
        return "coefficient CoeffCS, in standard deviations of the variable";
    case Weight::CoeffCSRaw:
        return "coefficient CoeffCS, in the units of the scaled variable";
    case Weight::VIP:
        return "importance VIP, in standard deviations of the variable";
    case Weight::Raw:
        return "none, in the units of the scaled variable";
    default:
        return "none, in standard deviations of the variable";
    }
}

class ContributionReader {
public:
    ContributionReader(engine::Project const &project, NamedSeries const &series)
        : m_project(project), m_vector(*series.vector), m_model(*series.source.model),
          m_texts(SplitContribution(m_vector, series.arguments)) {
        m_vector.ReadContribution(series.arguments.c_str(), m_asked);
    }

    std::vector<ExplainedPart> Read() const {
        std::vector<ExplainedPart> const groups = {
            {OfScore() ? "reference" : "group", m_texts.group1, Group(m_asked.observations1, m_asked.points1, true)},
            {OfScore() ? "compared" : "second group", m_texts.group2,
             OfScore() ? Group(m_asked.observations2, m_asked.points2, false) : notUsed}};
        std::vector<ExplainedPart> parts = {{"weights", m_texts.weights, Weights()},
                                            {"response", m_texts.response, Response()}};
        parts.insert(parts.end(), groups.begin(), groups.end());
        parts.push_back({"components", m_texts.components, Components()});
        return parts;
    }

private:
    bool OfScore() const { return m_vector.GetContributionKind() == 1 || m_vector.GetContributionKind() == 5; }
    bool OfY() const { return m_vector.GetContributionKind() == 4 || m_vector.GetContributionKind() == 7; }
    Weight::WeightType First() const { return m_asked.weights.empty() ? Weight::Normalized : m_asked.weights.front(); }
    bool IsSeveral() const {
        return OfScore() && m_asked.components.size() > 1 && First() != Weight::Normalized && First() != Weight::Raw;
    }

    std::string Weights() const {
        if (m_asked.weights.empty())
            return "none: there is nothing to ask";
        std::string text = NameOf(First());
        for (std::size_t j = 1; IsSeveral() && j < m_asked.weights.size(); ++j)
            text += std::string("; ") + NameOf(m_asked.weights[j]);
        return text + (IsSeveral() ? "; parts of the squared distance along these directions" : "");
    }

    std::string Response() const {
        bool const isUsed = First() == Weight::RY || First() == Weight::CoeffCS || First() == Weight::CoeffCSRaw;
        auto const model = m_project.GetModel(m_model.number);
        if (!isUsed || OfY() || !model)
            return notUsed;
        int const number = std::max(m_asked.yVariable, 1);
        if (number > model->GetYColumnTerms().Size())
            return "there is no Y variable " + std::to_string(number);
        return "Y variable " + std::to_string(number) + ", \"" +
               model->GetYColumnTerms()[number].GetPrimaryName(m_project.GetVariables()) + "\"";
    }

    boost::shared_ptr<NCDataContainerBase const> Rows() const {
        if (m_vector.GetObsPredType() == Vector::Predicted)
            return m_project.GetModelPredSet(m_model.number);
        return m_project.GetWorkset(m_model.number);
    }

    std::string Observation(int position) const {
        auto const rows = Rows();
        if (!rows || position < 1 || position > static_cast<int>(rows->GetObservations().size()))
            return "there is no observation " + std::to_string(position);
        std::uint32_t const number = rows->GetObservations()[static_cast<std::size_t>(position - 1)].GetUniqueID();
        return "observation " + std::to_string(position) + ", \"" + m_project.GetObservations().GetText(number, 1) +
               "\"";
    }

    std::string Point(std::pair<std::string, float> const &point) const {
        std::ostringstream text;
        text << (point.first.empty() ? "the average batch" : "batch \"" + point.first + "\"") << " at maturity "
             << point.second;
        return text.str();
    }

    std::string Group(std::list<int> const &observations, std::vector<std::pair<std::string, float>> const &points,
                      bool isReference) const {
        std::string text;
        for (int const position : observations)
            text += (text.empty() ? "" : "; ") + Observation(position);
        for (auto const &point : points)
            text += (text.empty() ? "" : "; ") + Point(point);
        if (!text.empty())
            return text;
        bool const isAligned = m_vector.IsAlignedContribution();
        if (isReference && OfScore())
            return isAligned ? "none: the average batch at the same points" : "none: the average of the workset";
        return isAligned ? "none: the first point of the first batch" : "none: " + Observation(1);
    }

    std::string Components() const {
        if (OfY() || (OfScore() && (First() == Weight::Normalized || First() == Weight::Raw)))
            return notUsed;
        std::string text = OfScore() ? "component" : "residuals after component";
        std::size_t shown = IsSeveral() ? m_asked.components.size() : 1;
        for (int const component : m_asked.components)
            if (shown-- > 0)
                text += (text.back() == 't' ? " " : ", ") + std::to_string(component);
            else
                break;
        return text;
    }

    engine::Project const &m_project;
    Vector const &m_vector;
    ModelInfo const &m_model;
    ContributionText m_texts;
    Vector::ContributionArguments m_asked;
};

} // namespace

ContributionText SplitContribution(ProjectVector const &vector, std::string const &arguments) {
    std::string const name = vector.GetName();
    bool const isAligned = vector.IsAlignedContribution();
    Cursor cursor(name, arguments);
    for (char const *const what : {"the source", "the component", "the number", "the round"})
        cursor.Field(what);
    ContributionText text;
    text.weights = cursor.Counted("weights", false);
    text.response = cursor.Field("the response");
    text.group1 = cursor.Counted("members of the first group", isAligned);
    text.group2 = cursor.Counted("members of the second group", isAligned);
    if (!isAligned)
        text.response = cursor.Field("the response, which stands behind the groups once more");
    text.components = cursor.Rest();
    return text;
}

std::vector<ExplainedPart> ExplainContribution(engine::Project const &project, NamedSeries const &series) {
    return ContributionReader(project, series).Read();
}
