#include "building/ProjectDataBuilder.h"
#include "building/TransformationData.h"
#include "platform/storage/XercesXMLSection.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/RealProject.h"
#include "tests/support/TemporaryFolder.h"

#include <memory>

namespace {

using ProjectDataUtilities::ProjectDataBuilder;

boost::shared_ptr<engine::Project> const &Project() {
    static TemporaryFolder const folder;
    static auto const project = MakeRealProject(folder / "real.dsp");
    return project;
}

bool Read(ProjectVectorData &data, ConfigurationSection &section, bool activeModel) {
    return data.ReadSection(Project(), &section, activeModel);
}
bool Read(TransformationData &data, ConfigurationSection &section, bool activeModel) {
    return data.ReadSection(Project(), &section, activeModel);
}
bool Read(SelectDataSeriesData &data, ConfigurationSection &section, bool) {
    return data.ReadSection(&section);
}

template <typename Data>
void Write(Data const &data, ConfigurationSection &section) {
    data.WriteSection(&section);
}
void Write(SelectDataSeriesData const &data, ConfigurationSection &section) {
    data.WriteSection(&section, false);
}

// What can be read is written in a form that reads back the same.
template <typename Data>
void ReadAndWrite(Data &data, Data copy, ConfigurationSection &section, bool activeModel) {
    if (!Read(data, section, activeModel))
        return;
    XercesXMLSection written;
    Write(data, written);
    Require(Read(copy, written, false));
    Require(copy == data);
}

SelectDataSeriesData Selection() {
    return {Project(), SelectDataSeriesData::Normal, ProjectVector::VectorTypeVariablesScores, -1,
            ProjectVector::ObsAndPred};
}

} // namespace

// The section of a specification, a transformation or a selection, of a real project, as the first byte tells. A
// selection that can be read is shown.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    FuzzInput const input(data, size);
    auto const section = XercesXMLSection::CreateXMLSectionFromString(input.bytes);
    if (!section)
        return 0;
    bool const activeModel = input.choice / 4 % 2 == 1;
    try {
        if (input.choice % 4 == 0) {
            ProjectVectorData vector;
            ReadAndWrite(vector, ProjectVectorData(), *section, activeModel);
        } else if (input.choice % 4 == 1) {
            TransformationData transformation;
            ReadAndWrite(transformation, TransformationData(), *section, activeModel);
        } else {
            SelectDataSeriesData selection = Selection();
            ReadAndWrite(selection, Selection(), *section, activeModel);
            std::unique_ptr<ProjectData> const table(ProjectDataBuilder(&selection).Build());
        }
    } catch (NCError const &) {
    }
    return 0;
}
