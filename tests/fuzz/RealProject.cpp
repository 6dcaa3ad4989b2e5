#include "tests/fuzz/RealProject.h"

#include "engine/ModelRequest.h"
#include "engine/TableReader.h"

#include <sstream>

namespace {

using engine::ModelRequest;

engine::ImportedTable Read(char const *text, char const *name) {
    std::istringstream stream(text);
    engine::TableOptions options;
    if (std::string_view(text).starts_with("batch"))
        options.batchColumn = "batch", options.phaseColumn = "phase";
    return engine::ReadTable(stream, name, options);
}

constexpr char plain[] = "id,site,x1,x2,x:3,y@1,y2\n"
                         "a,n,1,2,1,1.2,5\nb,s,2,1,4,1.9,3\nc,n,3,,2,3.4,4\nd,s,4,3,6,3.8,1\ne,n,5,7,3,5.6,2\n"
                         "f,s,6,4,8,5.9,6\n";
constexpr char fresh[] = "id,site,x:3,x1,x2,y@1,y2\np,n,5,3.5,2,3,2\nq,s,7,9,1,6.5,\na,n,5,3.5,,2.9,4\n";
constexpr char batches[] =
    "batch,phase,u1,u2,time\n"
    "A,warm,1,2,0\nA,warm,2,1,1\nA,run,3,4,2\nA,run,4,3,3\nA,run,5,7,4\nB,warm,2,2,0\nB,warm,1,1,1\nB,run,4,3,2\n"
    "B,run,3,5,3\nB,run,6,6,4\nC,warm,1,3,0\nC,warm,3,1,1\nC,run,3,3,2\nC,run,5,4,3\nC,run,5,6,5\n";

} // namespace

boost::shared_ptr<engine::Project> MakeRealProject(std::filesystem::path const &path) {
    auto const project = engine::Project::Create(path, Read(plain, "plain"));
    ModelRequest request;
    request.crossValidationGroups = 3;
    request.components = 2;
    request.xOrthogonal = request.yOrthogonal = 1;
    for (auto const type : {ModelTypeE::PCA, ModelTypeE::PLS, ModelTypeE::OPLS, ModelTypeE::O2PLS}) {
        request.type = type;
        if (type != ModelTypeE::PCA)
            request.responses = {"y@1", "y2"};
        project->AddModel(request);
        request.components = 1;
    }
    ModelRequest evolution;
    evolution.type = ModelTypeE::PLS;
    evolution.dataSet = project->AddDataSet(Read(batches, "batches"));
    evolution.responses = {"time"};
    evolution.components = 1;
    evolution.crossValidationGroups = 3;
    evolution.evolution.emplace();
    int const run = project->AddPhaseModels(evolution).back();
    request.type = ModelTypeE::PCA;
    request.responses.clear();
    project->AddBatchLevelModel({run}, request);
    request.type = ModelTypeE::PLS;
    request.responses = {"y2"};
    project->AddUpperModel({{{1, VariableInfo::Score}}, {"y2"}}, request);
    project->AddCorrection({1, {"y2"}});
    engine::CompressionRequest compression;
    compression.excluded = {"y@1", "y2"};
    compression.keep = 2;
    project->AddCompression(compression);
    project->AddPredictions(Read(fresh, "fresh"));
    return project;
}
