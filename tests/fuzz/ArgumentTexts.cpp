#include "building/CreateProjectData.h"
#include "platform/text/Exception.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/RecordingProject.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

class Parsers final : public ProjectVector {
public:
    explicit Parsers(NumberType number, int components) { m_numberType = number, m_componentType = components; }

    void ReadAll(char const *text) const {
        Arguments arguments;
        ReadArguments(text, arguments);
        if (arguments.rest != nullptr)
            Require(arguments.rest > text && arguments.rest <= text + std::char_traits<char>::length(text));
        std::list<int> numbers;
        ParseIntegerList(text, numbers);
        std::list<unsigned long> unsignedNumbers;
        ParseIntList(text, unsignedNumbers);
        Require(!numbers.empty() && !unsignedNumbers.empty());
    }

    // Of texts that tell how many items follow.
    void ReadContributions(char const *text) const {
        std::vector<WeightTypeE::WeightType> weights;
        std::list<int> group1, group2, components;
        std::vector<std::pair<std::string, float>> points1, points2;
        int yVariable = 0;
        ParseContribution(text, weights, group1, group2, yVariable, components);
        ParseALContribution(text, weights, points1, points2, yVariable, components);
    }
};

boost::shared_ptr<RecordingProject> MakeProject() {
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 2);
    project->AddModel(ModelTypeE::PLS, 2, 0, 0, 3, 2);
    project->AddModel(ModelTypeE::O2PLS, 1, 2, 1, 3, 2);
    project->AddBatchModel(2, {"A", "B"});
    project->AddData(0, {7, 8}, {1, 2});
    project->AddData(1, {1, 2, 3}, {1, 2, 3});
    for (int model = 1; model <= 4; ++model)
        project->AddPredictions(model, {7, 8});
    return project;
}

// The lists grow as the text says: no count of more than three digits, nor a number that stands for several items.
bool HasLargeNumbers(std::string const &text) {
    int digits = 0;
    return std::ranges::any_of(text,
                               [&digits](unsigned char c) { return (digits = std::isdigit(c) ? digits + 1 : 0) > 3; });
}

} // namespace

// Lines of vector texts ("t M1,1,0,0") along the axis that the first byte chooses. What is answered is a table whose
// columns are those that the text names.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    static auto const project = MakeProject();
    FuzzInput const input(data, size);
    auto const axis = static_cast<ProjectVector::VectorTypeEnum>(input.choice % 8);
    ProjectDataUtilities::CreateProjectData const create(*project);
    std::list<std::string> texts;
    std::istringstream lines(input.bytes);
    for (std::string line; texts.size() < 4 && std::getline(lines, line);) {
        line.resize(std::char_traits<char>::length(line.c_str())); // an argument text ends at a zero byte
        // Without a blank no list of columns can be told.
        if (line.find(' ') != std::string::npos)
            texts.push_back(line);
        Parsers const parsers(static_cast<ProjectVector::NumberType>(input.choice / 16), input.choice % 16);
        parsers.ReadAll(line.c_str());
        if (!HasLargeNumbers(line))
            parsers.ReadContributions(line.c_str());
        try {
            if (auto const table = create.GetProjectData(line, axis))
                Require(table->Columns() == create.GetColumnIDs(line, axis).Size());
        } catch (NCError const &) {
        }
    }
    try {
        create.GetProjectData(texts, axis);
    } catch (NCError const &) {
    }
    project->source.calls.clear();
    return 0;
}
