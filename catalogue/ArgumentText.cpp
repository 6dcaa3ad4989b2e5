#include "catalogue/ProjectVector.h"
#include "platform/text/VqString.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace {

// Numbers of an argument text are 32 bits wide on every machine: what is larger stops at the bound.
int ToInteger(char const *text) {
    long const value = std::strtol(text, nullptr, 10);
    long const low = std::numeric_limits<std::int32_t>::min();
    long const high = std::numeric_limits<std::int32_t>::max();
    return static_cast<int>(value < low ? low : value > high ? high : value);
}

// A minus sign is read and negates modulo 2^32, so that "-1" has all bits set.
std::uint32_t ToUnsigned(char const *text, char **end = nullptr) {
    constexpr unsigned long long largest = std::numeric_limits<std::uint32_t>::max();
    errno = 0;
    unsigned long long const value = std::strtoull(text, end, 10);
    // A negative number comes out of the conversion as its complement.
    bool const negative = value > largest && 0 - value <= largest && errno == 0;
    return static_cast<std::uint32_t>(value > largest && !negative ? largest : value);
}

// Walks the fields of an argument text. Behind the last field it starts at the beginning again.
class FieldReader {
public:
    explicit FieldReader(std::string text) : m_text(std::move(text)) {}

    std::string Next() {
        std::size_t const start = Start();
        m_comma = m_text.find(',', start);
        return m_text.substr(start, m_comma == std::string::npos ? m_comma : m_comma - start);
    }

    int NextInteger() { return ToInteger(Next().c_str()); }

    // A batch name, which may hold commas, up to its "$", then the maturity. False when there is no "$" any more.
    bool NextPoint(std::pair<std::string, float> &point) {
        std::size_t const start = Start();
        std::size_t const dollar = m_text.find('$', start);
        if (dollar == std::string::npos)
            return false;
        point.first = m_text.substr(start, dollar - start);
        // The value starts two characters behind the "$", at the latest where the text ends.
        m_comma = std::min(dollar + 1, m_text.size() - 1);
        point.second = static_cast<float>(VqString::vqstrtod(Next().c_str(), nullptr));
        return true;
    }

    // A comma stood behind the field read last.
    bool HasMore() const { return m_comma != std::string::npos; }

    // Position of the text behind the field read last; -1 when the text ended with it.
    int Rest() const { return HasMore() ? static_cast<int>(m_comma) + 1 : -1; }

private:
    std::size_t Start() const { return HasMore() ? m_comma + 1 : 0; }

    std::string m_text;
    std::size_t m_comma = std::string::npos;
};

void ReadWeights(FieldReader &reader, std::vector<WeightTypeE::WeightType> &weights) {
    for (int count = reader.NextInteger(); count > 0; --count)
        weights.push_back(static_cast<WeightTypeE::WeightType>(reader.NextInteger()));
}

void ReadGroup(FieldReader &reader, std::list<int> &group) {
    int count = reader.NextInteger();
    group.clear();
    for (; count > 0; --count)
        group.push_back(reader.NextInteger());
}

void ReadGroup(FieldReader &reader, std::vector<std::pair<std::string, float>> &group) {
    std::pair<std::string, float> point;
    for (int count = reader.NextInteger(); count > 0 && reader.NextPoint(point); --count)
        group.push_back(point);
}

} // namespace

bool ProjectVector::ReadArguments(char const *args, Arguments &arguments) const {
    arguments.rest = args;
    auto const advance = [&arguments](int position) {
        arguments.rest = position == -1 ? nullptr : arguments.rest + position;
    };
    bool const allKinds =
        GetComponentType() == (ComponentPredictive | ComponentXSideOrthogonal | ComponentYSideOrthogonal);
    advance(allKinds ? ParseAllComponents(args, arguments)
                     : Parse(args, arguments.source, arguments.component, arguments.number, arguments.round));
    if (m_useUnscalingTransform) {
        if (!arguments.rest)
            return false;
        advance(ParseScaleTransform(arguments.rest, arguments.backTransformed, arguments.unscaled));
    }
    if (UseNumberID2()) {
        if (!arguments.rest)
            return false;
        advance(ParseSecondNumber(arguments.rest, arguments.number2));
    }
    if (UseBatchIx()) {
        if (!arguments.rest)
            return false;
        advance(ParseBatchIx(arguments.rest, arguments.batch));
    }
    return true;
}

bool ProjectVector::ReadContribution(char const *args, ContributionArguments &contribution) const {
    Arguments common;
    if (!ReadArguments(args, common) || !common.rest)
        return false;
    contribution.source = common.source;
    if (IsAlignedContribution())
        ParseALContribution(common.rest, contribution.weights, contribution.points1, contribution.points2,
                            contribution.yVariable, contribution.components);
    else
        ParseContribution(common.rest, contribution.weights, contribution.observations1, contribution.observations2,
                          contribution.yVariable, contribution.components);
    return true;
}

int ProjectVector::Parse(char const *args, std::string &source, int &component, unsigned long &number,
                         int &round) const {
    FieldReader reader(args);
    source = reader.Next();
    component = reader.NextInteger();
    number = ToUnsigned(reader.Next().c_str());
    round = reader.NextInteger();
    return reader.Rest();
}

int ProjectVector::ParseAllComponents(char const *args, Arguments &arguments) const {
    FieldReader reader(args);
    arguments.source = reader.Next();
    arguments.component = reader.NextInteger();
    arguments.xSide = reader.NextInteger();
    arguments.ySide = reader.NextInteger();
    arguments.number = ToUnsigned(reader.Next().c_str());
    arguments.round = reader.NextInteger();
    return reader.Rest();
}

int ProjectVector::ParseScaleTransform(char const *args, bool &backTransformed, bool &unscaled) const {
    FieldReader reader(args);
    unscaled = reader.NextInteger() == 1;
    backTransformed = reader.NextInteger() == 1;
    return reader.Rest();
}

int ProjectVector::ParseContribution(char const *args, std::vector<WeightTypeE::WeightType> &weights,
                                     std::list<int> &group1, std::list<int> &group2, int &yVariable,
                                     std::list<int> &components) const {
    FieldReader reader(args);
    ReadWeights(reader, weights);
    reader.Next(); // the response stands twice, and the second one counts
    ReadGroup(reader, group1);
    ReadGroup(reader, group2);
    yVariable = reader.NextInteger();
    // Without components this reads the whole text from its beginning.
    do
        components.push_back(reader.NextInteger());
    while (reader.HasMore());
    return -1;
}

int ProjectVector::ParseALContribution(char const *args, std::vector<WeightTypeE::WeightType> &weights,
                                       std::vector<std::pair<std::string, float>> &group1,
                                       std::vector<std::pair<std::string, float>> &group2, int &yVariable,
                                       std::list<int> &components) const {
    FieldReader reader(args);
    ReadWeights(reader, weights);
    yVariable = reader.NextInteger();
    ReadGroup(reader, group1);
    ReadGroup(reader, group2);
    while (reader.HasMore())
        components.push_back(reader.NextInteger());
    return -1;
}

int ProjectVector::ParseBatchIx(char const *args, int &batch) const {
    return ParseInteger(args, batch);
}

int ProjectVector::ParseInteger(char const *args, int &value) {
    FieldReader reader(args);
    value = reader.NextInteger();
    return reader.Rest();
}

int ProjectVector::ParseSecondNumber(char const *args, unsigned long &number) const {
    FieldReader reader(args);
    number = ToUnsigned(reader.Next().c_str());
    return reader.Rest();
}

void ProjectVector::ParseIntegerList(std::string const &args, std::list<int> &values) {
    FieldReader reader(args);
    do
        values.push_back(reader.NextInteger());
    while (reader.HasMore());
}

void ProjectVector::ParseIntList(char const *args, std::list<unsigned long> &values) {
    for (;; ++args) {
        char *end = nullptr;
        values.push_back(ToUnsigned(args, &end));
        if (*end != ',')
            return;
        args = end;
    }
}
