#include "app/Choice.h"
#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/ProgressBar.h"
#include "app/Summary.h"
#include "app/Tree.h"
#include "app/VariableOptions.h"
#include "engine/Project.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <map>
#include <sstream>

namespace {

struct Kind {
    ModelTypeE::Model type = ModelTypeE::PCA;
    enum Level { Observations, Classes, Evolution, Batches, Tree } level = Observations;
};

struct FitRequest {
    std::filesystem::path project;
    engine::ModelRequest model;
    std::vector<std::string> responses; // as given: lists of names
    std::vector<std::string> qualitative;
    std::vector<std::string> excluded;
    std::vector<std::string> transformations;
    std::vector<std::string> scalings;
    std::vector<std::string> products;
    std::vector<std::string> weights;
    std::vector<std::string> blocks;
    std::vector<std::string> lags;
    Kind kind;
    std::string maturity;
    engine::EvolutionRequest batches;
    bool phaseModels = false;
    engine::BatchLevelRequest level;
    std::vector<std::string> below;     // results and variables that the model stands on
    std::optional<int> depth, smallest; // of a tree
};

struct ListRequest {
    std::filesystem::path project;
    Format format = Format::Text;
};

// "2", "1,2", "1,2,1": predictive, X-side and Y-side orthogonal components; what is left out is found.
void SetComponents(engine::ModelRequest &model, std::string const &text) {
    int *const counts[] = {&model.components, &model.xOrthogonal, &model.yOrthogonal};
    std::istringstream stream(text);
    std::size_t read = 0;
    for (std::string part; std::getline(stream, part, ','); ++read) {
        bool const isNumber = !part.empty() && part.size() <= 6 && part.find_first_not_of("0123456789") == part.npos;
        if (!isNumber || read == std::size(counts) || (read == 0 && part == "0"))
            throw UsageError("\"" + text + "\" is no number of components such as 2, or 1,2,1 for O2PLS");
        *counts[read] = std::stoi(part);
    }
    if (read == 0 || text.back() == ',')
        throw UsageError("\"" + text + "\" is no number of components such as 2, or 1,2,1 for O2PLS");
}

// A kind of model that has no orthogonal components takes none.
void CheckComponents(engine::ModelRequest &model) {
    bool const isX = ModelTypeE::IsOPLSorO2PLS(model.type);
    bool const isY = ModelTypeE::IsO2PLS(model.type);
    if ((model.xOrthogonal > 0 && !isX) || (model.yOrthogonal > 0 && !isY))
        throw UsageError("A " + ModelTypeE::GetModelTypeName(model.type) + " model has no " + (isX ? "Y-side " : "") +
                         "orthogonal components");
    if (!isX)
        model.xOrthogonal = 0;
    if (!isY)
        model.yOrthogonal = 0;
}

// "of phase growth, 30 batches on 120 points".
std::string BatchesOf(NCBatchModel const &model, ModelInfo const &info) {
    std::string const phase = info.GetClassPhaseName(1);
    return (phase.empty() ? "" : "of phase " + phase + ", ") + std::to_string(model.GetBatchIndexes().size()) +
           " batches on " + std::to_string(model.GetTimeMaturityVector().Size()) + " points";
}

void Report(Output &output, FitRequest const &request, engine::Project const &project, int model) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    output << request.project.string() << ": model " << std::to_string(model) << " ("
           << ModelTypeE::GetModelTypeName(info->type) << ") of data set " << std::to_string(info->dataSets.front())
           << "\n  observations  " << std::to_string(info->sizeObservations) << "\n  X variables   "
           << std::to_string(info->sizeXVariables) << "\n";
    if (info->sizeYVariables > 0)
        output << "  Y variables   " << std::to_string(info->sizeYVariables) << "\n";
    if (!info->isBatchModel && !info->classOrPhaseNames.empty())
        output << "  classes       " << Listed(info->classOrPhaseNames) << "\n";
    if (auto const batches = boost::dynamic_pointer_cast<NCBatchModel const>(project.GetModel(model)))
        output << "  batches       " << BatchesOf(*batches, *info) << "\n";
    DefaultCenterValues const centres = project.GetModel(model)->GetCenterValues();
    if (centres.SizeVars() > 0)
        output << "  centred       " << std::to_string(centres.SizeVars()) << " variables by " << centres.identifier
               << "\n";
    output << "  components    " << std::to_string(info->SizeComponents()) << "\n";
    if (info->SizeComponents() == 0)
        output << "Cross-validation finds no significant component. --components N takes N of them all the same.\n";
    else if (info->SizeComponents() < request.model.components)
        output << "The data has no more than these components.\n";
    if (info->SizeComponents() > 0)
        SummaryOf(project, model, false).Write(output, Format::Text);
    output << NotesOn(project, model);
}

void CheckClasses(FitRequest const &request) {
    bool const isDiscriminant = request.kind.level == Kind::Classes;
    if (!isDiscriminant && !request.model.classes.empty())
        throw UsageError("--classes is for --type pls-da and opls-da");
    if (isDiscriminant && (request.model.classes.empty() || !request.model.responses.empty()))
        throw UsageError("A discriminant model takes its classes as responses: --classes COLUMN, and no --y");
}

// The model of batches that the options tell.
void SetEvolution(FitRequest &request) {
    bool const hasOptions = !request.maturity.empty() || request.phaseModels || !request.batches.phase.empty() ||
                            request.batches.treatment != BatchYVarTreatment::None || request.batches.alignByMaturity ||
                            request.batches.points > 0;
    if (request.kind.level != Kind::Evolution && hasOptions)
        throw UsageError("--maturity, --phase, --phase-models, --treatment, --align and --points are for --type batch "
                         "and batch-opls");
    if (request.kind.level != Kind::Evolution)
        return;
    if (request.maturity.empty() || !request.model.responses.empty())
        throw UsageError("A model of batches takes their maturity as its response: --maturity NAME, and no --y");
    request.model.responses = {request.maturity};
    request.model.evolution = request.batches;
}

// Of whole batches: makes the data set that the model is of.
void SetLevel(FitRequest &request) {
    bool const hasOptions = request.level.model != 0 || request.level.conditions != 0 || request.level.ofVariables;
    if (request.kind.level != Kind::Batches && hasOptions)
        throw UsageError("--from, --with and --of are for --type batch-level and batch-level-opls");
    if (request.kind.level != Kind::Batches)
        return;
    if (request.level.model == 0)
        throw UsageError("A batch-level model is made of a model of batches: --from N");
    if (request.model.type == ModelTypeE::PCA && !request.model.responses.empty())
        request.model.type = ModelTypeE::PLS;
}

engine::TreeRequest TreeOf(FitRequest const &request) {
    engine::TreeRequest tree;
    tree.model = request.model;
    tree.depth = request.depth.value_or(tree.depth);
    tree.properties.smallest = request.smallest.value_or(tree.properties.smallest);
    return tree;
}

void ReportTree(Output &output, FitRequest const &request, engine::Project const &project, int root) {
    std::vector<TreeRow> const tree = ReadTree(project, root);
    output << request.project.string() << ": tree of " << std::to_string(tree.size()) << " PLS models\n";
    if (tree.size() == 1)
        output << "Model " << std::to_string(root)
               << " is not cut: it has no component, or too few observations for two parts.\n";
    TreeListing(tree, Format::Text).Write(output, Format::Text);
}

void CheckResponses(engine::ModelRequest const &model) {
    bool const needsResponses = (model.type & ModelTypeE::WithY) != 0 && model.classes.empty();
    if (needsResponses && model.responses.empty())
        throw UsageError("The model (" + ModelTypeE::GetModelTypeName(model.type) +
                         ") needs its Y variables: --y NAME,...");
    if (!needsResponses && !model.responses.empty())
        throw UsageError("A PCA model has no Y variables; --y is for PLS, OPLS and O2PLS");
}

// What a model above others stands on: its responses are variables of the data sets below.
engine::HierarchyRequest HierarchyOf(FitRequest const &request) {
    engine::HierarchyRequest hierarchy;
    for (std::string const &text : NamesIn(request.below))
        AddHierarchyItem(hierarchy, text);
    if (!request.below.empty() && (hierarchy.results.empty() || request.kind.level > Kind::Classes))
        throw UsageError("--on names results of models, such as M1.t, that a model of observations stands on");
    for (std::string const &response : request.model.responses)
        if (std::ranges::find(hierarchy.variables, response) == hierarchy.variables.end())
            hierarchy.variables.push_back(response);
    return hierarchy;
}

void Fit(FitRequest request) {
    request.model.type = request.kind.type;
    request.model.responses = NamesIn(request.responses);
    request.model.qualitative = NamesIn(request.qualitative);
    CheckClasses(request);
    SetEvolution(request);
    SetLevel(request);
    CheckResponses(request.model);
    request.model.excluded = NamesIn(request.excluded);
    request.model.transformations = TransformationsIn(NamesIn(request.transformations));
    SetScaling(request.model, NamesIn(request.scalings));
    request.model.weights = WeightsIn(NamesIn(request.weights));
    for (std::string const &text : request.blocks)
        if (!request.model.blocks.insert(BlockIn(text)).second)
            throw UsageError("The block in \"" + text + "\" is the second one of its name");
    for (std::string const &text : NamesIn(request.products))
        request.model.products.push_back(FactorsIn(text));
    for (std::string const &text : NamesIn(request.lags))
        request.model.lags.push_back(LagsIn(text));
    CheckComponents(request.model);
    engine::HierarchyRequest const hierarchy = HierarchyOf(request);
    if (request.kind.level != Kind::Tree && (request.depth || request.smallest))
        throw UsageError("--depth and --smallest are for --type plstree");
    auto const project = engine::Project::OpenToWrite(request.project);
    std::vector<int> const models = [&] {
        ProgressBar bar("Fitting");
        if (request.phaseModels)
            return project->AddPhaseModels(request.model, bar.Listener());
        if (request.kind.level == Kind::Tree)
            return project->AddTree(TreeOf(request), bar.Listener());
        if (request.kind.level == Kind::Batches)
            return std::vector{project->AddBatchLevelModel(request.level, request.model, bar.Listener())};
        return std::vector{hierarchy.results.empty()
                               ? project->AddModel(request.model, bar.Listener())
                               : project->AddUpperModel(hierarchy, request.model, bar.Listener())};
    }();
    Output output;
    if (request.kind.level == Kind::Tree)
        ReportTree(output, request, *project, models.front());
    else
        for (int const model : models)
            Report(output, request, *project, model);
    output.Finish();
}

void List(ListRequest const &request, Listing (*list)(engine::Project const &)) {
    auto const project = engine::Project::OpenToRead(request.project);
    Output output;
    list(*project).Write(output, request.format);
    output.Finish();
}

void AddListCommand(CLI::App &program, std::string const &name, std::string const &purpose,
                    Listing (*list)(engine::Project const &)) {
    auto const request = std::make_shared<ListRequest>();
    CLI::App *const command = program.add_subcommand(name, purpose);
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddFormatOption(*command, request->format);
    command->footer("Example: dataseries " + name + " wine.project --format json");
    command->callback([request, list] { List(*request, list); });
}

} // namespace

void AddModelCommands(CLI::App &program) {
    auto const request = std::make_shared<FitRequest>();
    engine::ModelRequest &model = request->model;
    CLI::App *const command = program.add_subcommand("fit", "Fit a model to a data set");
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddChoice<Kind>(*command, "--type", request->kind,
                    {{"pca", {ModelTypeE::PCA}},
                     {"pls", {ModelTypeE::PLS}},
                     {"opls", {ModelTypeE::OPLS}},
                     {"o2pls", {ModelTypeE::O2PLS}},
                     {"pls-da", {ModelTypeE::PLSDA, Kind::Classes}},
                     {"opls-da", {ModelTypeE::OPLS, Kind::Classes}},
                     {"plstree", {ModelTypeE::PLS, Kind::Tree}},
                     {"batch", {ModelTypeE::PLS, Kind::Evolution}},
                     {"batch-opls", {ModelTypeE::OPLS, Kind::Evolution}},
                     {"batch-level", {ModelTypeE::PCA, Kind::Batches}},
                     {"batch-level-opls", {ModelTypeE::OPLS, Kind::Batches}}},
                    "Kind of model; pls-da and opls-da tell classes apart,\nplstree makes PLS models of all "
                    "observations, of the\ntwo groups into which they fall, and so on; batch and\nbatch-opls tell how "
                    "batches evolve with their\nmaturity, batch-level (PCA, or PLS with --y) and\nbatch-level-opls are "
                    "of whole batches, one row for each")
        ->required();
    command->add_option("--data", model.dataSet, "The number of the data set (1)")->type_name("N");
    command
        ->add_option("--y", request->responses,
                     "The Y variables; all others are X variables. An\nidentifier column makes a 0/1 variable for each "
                     "text")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    command->add_option("--classes", model.classes, "Of pls-da and opls-da: the identifier column that tells classes")
        ->type_name("COLUMN");
    command
        ->add_option("--qualitative", request->qualitative,
                     "Identifier columns that X has as 0/1 variables, one\nfor each text")
        ->type_name("COLUMNS")
        ->allow_extra_args(false);
    command->add_option("--exclude", request->excluded, "Variables and observations that are left out")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    command->add_option("--transform", request->transformations, "Transform a variable before it is scaled")
        ->type_name("NAME=KIND[:C1[:C2[:C3]]],...")
        ->allow_extra_args(false);
    command->add_option("--product", request->products, "Square and cross terms of X variables, such as width*width")
        ->type_name("NAME*NAME,...")
        ->allow_extra_args(false);
    command
        ->add_option(
            "--lags", request->lags,
            "What variables of X, responses too, were some\nobservations earlier, in the same batch, as further "
            "X\nvariables; all stands for each X variable")
        ->type_name("NAME:LAG[-LAG],...")
        ->allow_extra_args(false);
    command->add_flag("--squares", model.squares, "The squares of all X variables as further terms");
    command->add_flag("--crosses", model.crosses, "The products of every two X variables as further terms");
    command->add_flag("!--no-local-centring", model.localCentring,
                      "Do not use the centre values that \"centre\" has set");
    command
        ->add_option("--scaling", request->scalings,
                     "Unit variance (uv), centred only (ctr), Pareto (par), or as it is (none): of all variables, "
                     "of X or Y, or of those named. Under ctr, R2 and Q2 weigh variables by their variance, under par "
                     "by its root: they do not compare with uv")
        ->type_name("[X:|Y:|NAME=]KIND,...")
        ->allow_extra_args(false);
    command->add_option("--weight", request->weights, "What the scaled values of a variable are multiplied by")
        ->type_name("NAME=NUMBER,...")
        ->allow_extra_args(false);
    command->add_option("--block", request->blocks, "X variables that weigh together as other blocks do, however many")
        ->type_name("BLOCK=NAME,...")
        ->allow_extra_args(false);
    AddChoice(
        *command, "--block-scaling", model.hardBlocks, {{"soft", false}, {"hard", true}},
        "Divide K variables of a block by K^(1/4) (soft) or, so that\nall blocks have one variance, by K^(1/2) (hard)");
    command
        ->add_option_function<std::string>(
            "--components", [request](std::string const &text) { SetComponents(request->model, text); },
            "How many components (those that are significant); of opls and o2pls also the orthogonal ones")
        ->type_name("N[,X[,Y]]");
    CLI::Option *const groups =
        command->add_option("--cv-groups", model.crossValidationGroups, "Groups of cross-validation (7); 0: none");
    groups->type_name("N")->check(CLI::Range(0, 1000000));
    command
        ->add_option("--cv-by", model.crossValidationIdentifier,
                     "Leave out together what has the same text in this identifier column")
        ->type_name("COLUMN")
        ->excludes(groups);
    command->add_option("--maturity", request->maturity, "Of batches: the variable that tells how far a batch has come")
        ->type_name("NAME");
    CLI::Option *const phases =
        command->add_flag("--phase-models", request->phaseModels, "Of batches: one model for each phase");
    command->add_option("--phase", request->batches.phase, "Of batches: of this phase only")
        ->type_name("NAME")
        ->excludes(phases);
    AddChoice(*command, "--treatment", request->batches.treatment,
              {{"none", BatchYVarTreatment::None},
               {"shifted", BatchYVarTreatment::Shifted},
               {"normalized", BatchYVarTreatment::Normalized},
               {"smoothed", BatchYVarTreatment::Smoothed}},
              "Of batches: what is done to the maturity, batch by batch");
    AddChoice(*command, "--align", request->batches.alignByMaturity, {{"length", false}, {"maturity", true}},
              "Of batches: lay them side by side by their length (length)\nor by their maturity");
    command->add_option("--points", request->batches.points, "Points of an aligned batch (the median length)")
        ->type_name("N")
        ->check(CLI::Range(1, 100000));
    command->add_option("--from", request->level.model, "Of whole batches: a model that --type batch has fitted")
        ->type_name("N");
    AddChoice(*command, "--of", request->level.ofVariables, {{"scores", false}, {"variables", true}},
              "Of whole batches: of the scores of the models of all\nphases, or of their X variables, along their way");
    command
        ->add_option("--with", request->level.conditions,
                     "Of whole batches: a data set of initial conditions, by batch")
        ->type_name("N");
    command
        ->add_option("--on", request->below,
                     "Results of models that the model stands on: t, to,\nYPred, XVarRes, DModX or T2 of a model, all "
                     "of them or\none; and variables as they are")
        ->type_name("M1.t,M2.t[1],NAME,...")
        ->allow_extra_args(false);
    command->add_option("--depth", request->depth, "Of a tree: cuts from the first model to the last (3)")
        ->type_name("N")
        ->check(CLI::Range(1, 20));
    command
        ->add_option("--smallest", request->smallest,
                     "Of a tree: observations of the smallest part (5, or\na quarter where fewer than 20 are cut)")
        ->type_name("N")
        ->check(CLI::Range(2, 100000000));
    AddChoice(*command, "--q2", model.q2,
              {{"rounds", engine::ModelRequest::FullRounds}, {"deflated", engine::ModelRequest::DeflatedMatrices}},
              "Q2 by rounds that fit all components anew (rounds), or, of\n"
              "pca and pls, by rounds that fit each component to what those\n"
              "before it leave (deflated)");
    command->footer(
        "Names are separated by commas. A name that holds a comma stands in double quotes. Without --components,\n"
        "those are taken that cross-validation finds significant. R2 is what a component explains, Q2 what\n"
        "of it is predicted when observations are left out.\n"
        "Example: dataseries fit wine.project --type pca\n"
        "         dataseries fit oil.project --type pls --y octane --scaling ctr\n"
        "         dataseries fit mill.project --type pls --y kappa --lags all:1-3,kappa:1\n"
        "         dataseries fit mill.project --type pls --y kappa --on M1.t,M2.t\n"
        "         dataseries fit wine.project --type pls-da --classes cultivar");
    command->callback([request] { Fit(*request); });

    AddListCommand(program, "models", "List the models of a project", ModelsOf);
    AddListCommand(program, "datasets", "List the data sets and prediction sets of a project", DataSetsOf);
}
