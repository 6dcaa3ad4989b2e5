#include "app/Failure.h"
#include "app/SeriesSpecification.h"
#include "building/CreateProjectData.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/RealProject.h"
#include "tests/support/TemporaryFolder.h"
#include "utilities/DefaultSelection.h"

#include <sstream>

namespace {

using Axis = ProjectVector::VectorTypeEnum;

// The specification names a vector that the project has, as an argument text that the catalogue takes.
void ReadTyped(boost::shared_ptr<engine::Project> const &project, std::string const &text, Axis axis) {
    ProjectUtilities::DefaultSelection const defaults(project);
    VectorText const read = ReadVectorText(text);
    Axis const found = FindAxis(*project, read);
    if (axis == ProjectVector::VectorTypeNone)
        axis = found;
    ProjectVectorData const data = Specify(project, read, axis, defaults);
    Require(data.GetProjectVector() && data.GetProjectVector()->GetName() == read.name);
}

} // namespace

// Lines of vectors along the axis that the first byte chooses (0: that on which they exist), as a person types them
// ("YPred:octane@M2") or, where that byte is 8 or more, with their arguments ("t M1,1,0,0"), asked of a real project.
// What is answered is a table whose columns are those that the text names.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    static TemporaryFolder const folder;
    static auto const project = MakeRealProject(folder / "real.dsp");
    FuzzInput const input(data, size);
    auto const axis = static_cast<Axis>(input.choice % 8 % 7);
    ProjectDataUtilities::CreateProjectData const create(*project);
    std::istringstream lines(input.bytes.substr(0, input.bytes.find('\0')));
    int count = 0;
    for (std::string line; count < 4 && std::getline(lines, line); ++count) {
        try {
            if (input.choice < 8) {
                ReadTyped(project, line, axis);
            } else if (line.find(' ') != std::string::npos) { // without a blank no list of columns can be told
                if (auto const table = create.GetProjectData(line, axis))
                    Require(table->Columns() == create.GetColumnIDs(line, axis).Size());
            }
        } catch (NCError const &) {
        } catch (UsageError const &) {
        }
    }
    return 0;
}
