#include "app/Commands.h"
#include "app/ControlChartScript.h"
#include "app/Decorations.h"
#include "app/DistributionScript.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/PlotScript.h"
#include "app/Reason.h"
#include "app/SeriesSpecification.h"
#include "app/SpectralScript.h"
#include "app/TableWriter.h"
#include "app/TransformOptions.h"
#include "app/VariableOptions.h"
#include "app/VectorSearch.h"
#include "building/CreateProjectData.h"
#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "selection/SelectDataSeriesData.h"
#include "utilities/BatchConverter.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <unordered_set>

namespace {

using Axis = ProjectVector::VectorTypeEnum;
using ProjectDataUtilities::CreateProjectData;
using ProjectDataUtilities::ProjectDataBuilder;

constexpr char const *countingRow = "Num";

struct BuildRequest {
    std::filesystem::path project;
    std::optional<Axis> axis;
    std::string x;
    std::string y;
    std::vector<std::string> series;
    SelectDataSeriesData::ScaleType scale = SelectDataSeriesData::ScaleNone;
    std::vector<std::string> only;
    std::vector<std::string> without;
    std::vector<std::string> batches;
    std::optional<double> multiplier;
    TransformRequest transform;
    bool isProbability = false; // a picture against normal probabilities
    Format format = Format::Text;
    std::filesystem::path file;
    std::filesystem::path picture;
    std::string color;
    PlotStyle style;
};

SelectDataSeriesData::Mode ModeOf(BuildRequest const &request) {
    int const mode =
        (request.x.empty() ? 0 : SelectDataSeriesData::AxisX) | (request.y.empty() ? 0 : SelectDataSeriesData::AxisY);
    return static_cast<SelectDataSeriesData::Mode>(mode);
}

Axis AxisFor(engine::Project const &project, BuildRequest const &request) {
    if (request.axis)
        return *request.axis;
    std::vector<std::string> texts{request.x, request.y};
    texts.insert(texts.end(), request.series.begin(), request.series.end());
    for (std::string const &text : texts)
        if (!text.empty() && text != countingRow)
            return FindAxis(project, ReadVectorText(text));
    if (std::find(texts.begin(), texts.end(), countingRow) != texts.end())
        throw Problem(ExceptionMessage::translate("\"Num\" counts the items of another vector; give one, too."));
    return ProjectVector::VectorTypeVariablesScores;
}

NCError GivesNothing(engine::Project const &project, std::string const &text, ProjectVectorData const &data,
                     ProjectUtilities::DefaultSelection const &defaults) {
    std::string const arguments = data.ToStdString(&defaults);
    return GivesNothing(project, *data.GetProjectVector(), ReadSource(project, data.GetDataSourceName(), text),
                        arguments.substr(arguments.find(' ') + 1), text);
}

// A vector that gives nothing would be left out of the table without a word.
void CheckGivesData(engine::Project const &project, std::string const &text, ProjectVectorData const &data, Axis axis,
                    ProjectUtilities::DefaultSelection const &defaults) {
    if (!data.CheckNumberIDs(project.shared_from_this()) ||
        CreateProjectData(project).GetColumnIDs(data.ToStdString(&defaults), axis).Size() == 0)
        throw GivesNothing(project, text, data, defaults);
}

int IndexOf(ProjectUtilities::BatchConverter const &batches, std::string const &name) {
    std::vector<int> indexes;
    batches.FromBatchToIndex({name}, indexes);
    return indexes.front();
}

// The indexes of batches by which a vector is asked; of aligned ones the average and the deviation of all too.
std::vector<int> BatchIndexes(engine::Project const &project, ProjectVectorData const &data,
                              std::vector<std::string> const &names) {
    bool const predicted = data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted;
    bool const isAligned = data.GetProjectVector()->GetType() == ProjectVector::VectorTypeAligned;
    int const model = data.GetModelInfo()->number;
    ProjectUtilities::BatchConverter const batches(project, model, predicted);
    std::vector<int> indexes;
    for (std::string const &name : names) {
        if (batches.HasBatch(name))
            indexes.push_back(IndexOf(batches, name));
        else if (isAligned && (name == "Average" || name == "Std.Dev."))
            indexes.push_back(name == "Average" ? -1 : 0);
        else
            throw Problem(ExceptionMessage::translate("There is no batch \"{1}\" in model {2}.") % name % model);
    }
    return indexes;
}

void FillSelection(boost::shared_ptr<engine::Project> const &project, BuildRequest const &request,
                   SelectDataSeriesData &selection) {
    ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
    Axis const axis = selection.GetVectorType();
    auto const specified = [&](std::string const &text) {
        ProjectVectorData data;
        if (text == countingRow) {
            data.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(axis));
            return data;
        }
        data = Specify(project, ReadVectorText(text), axis, defaults);
        if (data.GetProjectVector()->HasMultiplier() && request.multiplier) {
            data.multiplier1 = *request.multiplier;
            data.multiplier2 = -*request.multiplier;
        }
        CheckGivesData(*project, text, data, axis, defaults);
        return data;
    };
    if (!request.x.empty())
        selection.SetXAxis(specified(request.x));
    if (!request.y.empty())
        selection.SetYAxis(specified(request.y));
    for (std::string const &text : request.series) {
        ProjectVectorData data = specified(text);
        if (request.batches.empty() || !data.GetProjectVector()->UseBatchIx()) {
            selection.AddSeries(data, false);
            continue;
        }
        for (int const index : BatchIndexes(*project, data, NamesIn(request.batches))) {
            data.batchIx = index;
            selection.AddSeries(data, false);
        }
    }
    if (!request.series.empty() || selection.GetMode() != SelectDataSeriesData::Normal)
        return;
    ProjectVectorData data;
    if (!ProjectVectorData::SetProjectVectorDataDefault(project, axis, data, ProjectVector::DataTypeModel, nullptr,
                                                        project->GetFirstDataSet(0), ProjectVector::ObsAndPred) ||
        !data.GetProjectVector())
        throw Problem(ExceptionMessage::translate("The project has nothing with one value for each {1}.") %
                      ItemOf(axis));
    selection.AddSeries(data, false);
}

// Keeps of the items selected so far the named ones, or all others.
void SelectItems(SelectDataSeriesData &selection, std::vector<std::string> const &names, bool named) {
    ColumnIDs const *const columns = selection.GetColumnIDs();
    std::unordered_set<std::string> left(names.begin(), names.end());
    std::unordered_set<std::string> const wanted = left;
    BoolVector objects = selection.GetSelectObjects();
    for (int item = 1; columns && item <= objects.Size(); ++item) {
        std::string const label = columns->GetName(item);
        if (wanted.contains(label) != named)
            objects(item) = false;
        left.erase(label);
    }
    if (!left.empty())
        throw Problem(ExceptionMessage::translate("There is no {1} \"{2}\" among the items of the series.") %
                      ItemOf(selection.GetVectorType()) % *left.begin());
    selection.SetSelectObjects(objects);
}

void SelectBatches(SelectDataSeriesData &selection, std::vector<std::string> const &names) {
    for (std::string const &name : names)
        if (selection.SelectBatches({name}) != SelectDataSeriesData::ItemsSelected)
            throw Problem(ExceptionMessage::translate("There is no batch \"{1}\" among the items of the series.") %
                          name);
    selection.SelectBatches(names);
}

// Which of the series the builder left out.
NCError MissingSeries(engine::Project const &project, SelectDataSeriesData const &selection, ProjectData const *table) {
    ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        std::string const text = data->ToStdString(&defaults);
        if (!data->GetProjectVector()->IsNumVector() &&
            !CreateProjectData(project).GetProjectData(text, selection.GetVectorType()))
            return GivesNothing(project, text, *data, defaults);
    }
    return Problem(ExceptionMessage::translate("Of {1} series {2} have an item in common.") %
                   static_cast<int>(selection.VectorsInUse().size()) % (table ? table->Rows() : 0));
}

// The labels that a window shows, in place of those of the statistics.
TablePtr Labelled(ProjectData const &table, SelectDataSeriesData const &selection) {
    int const alias = selection.GetPreferredTitleID(false);
    NCStringVector labels;
    ProjectUtilities::DefaultSelection const *const defaults = selection.GetDefaultSelection().get();
    for (ProjectVectorData const *data : selection.VectorsInUse()) {
        // An identifier is named by its own heading.
        bool const isIdentifier = data->GetProjectVector()->GetNumberType() == ProjectVector::NumberIdentifier;
        labels.push_back(data->GetProjectVectorName(
            defaults, false, "", isIdentifier ? static_cast<int>(data->GetNumber(defaults)) : alias, false));
    }
    return std::make_unique<ProjectData>(RowIDs(labels, table.GetProject()), table.GetColumnIDs(), table.GetMatrix());
}

// By what each row of the table is asked.
std::vector<DrawnSeries> RowsOf(SelectDataSeriesData const &selection) {
    std::vector<DrawnSeries> rows;
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        std::string const text = data->ToStdString(selection.GetDefaultSelection().get());
        rows.push_back({data->GetProjectVector(), text.substr(std::min(text.find(' '), text.size() - 1) + 1)});
    }
    return rows;
}

// The tables of a selection: as it was read, and as its transformation or chart makes it, null without one.
struct BuiltTables {
    TablePtr plain, transformed;
};

// A picture of what its transformation makes of a selection.
std::string ScriptOf(boost::shared_ptr<engine::Project> const &project, BuildRequest const &request,
                     SelectDataSeriesData const &selection, ProjectDataBuilder const &builder,
                     BuiltTables const &tables) {
    Axis const axis = selection.GetVectorType();
    PlotStyle style = request.style;
    std::string const name = tables.plain->GetRowName(1);
    if (request.isProbability)
        return ProbabilityScript(tables.transformed ? *tables.transformed : *tables.plain, name, style);
    if (ControlChart const *const chart = builder.GetControlChart())
        return ControlChartScript(*chart, selection.GetControlChartData(), tables.transformed->GetColumnIDs(), axis,
                                  name, style);
    TransformationData const &settings = selection.GetTransformationData();
    if (settings.GetTransformationType() == TransformationData::Histogram)
        return HistogramScript(tables.plain->GetMatrix()[1], name, style);
    if (settings.GetTransformationType() == TransformationData::Dotplot) {
        float lo = 0, hi = 0;
        TablePtr const dots(builder.ToDotplotProjectData(false, tables.plain.get(), settings, lo, hi));
        return DotPlotScript(*dots, lo, hi, name, style);
    }
    switch (settings.GetTransformationType()) {
    case TransformationData::AutoCorrelation:
    case TransformationData::CrossCorrelation:
        return CorrelationScript(*tables.transformed, tables.plain->Columns(), style);
    case TransformationData::PowerSpectrum:
        return SpectrumScript(*tables.transformed, settings.HasAmplitudeInDecibel(), style);
    case TransformationData::WaveletCoefficients:
        return CoefficientScript(*tables.transformed, style);
    case TransformationData::WaveletStructure:
        return StructureScript(*tables.transformed, *builder.GetWCEnergy(), axis, style);
    default:
        break;
    }
    std::vector<DrawnSeries> const rows = RowsOf(selection);
    ProjectData const &built = tables.transformed ? *tables.transformed : *tables.plain;
    style.isScatter = ModeOf(request) != SelectDataSeriesData::Normal && built.Rows() == 2;
    if (tables.transformed)
        return PlotScript(built, axis, style);
    TablePtr const ordered = style.isScatter ? nullptr : InDrawnOrder(*project, rows, axis, built);
    ProjectData const &table = ordered ? *ordered : built;
    style.colouring = ReadColouring(project, request.color, rows, axis, table.GetColumnIDs());
    Decorate(*project, rows, axis, selection.GetExtraOptions().significance, table, style);
    return PlotScript(table, axis, style);
}

BuiltTables ReadTables(engine::Project const &project, BuildRequest const &request,
                       SelectDataSeriesData const &selection, ProjectDataBuilder &builder) {
    builder.SetIsList(request.picture.empty() || selection.GetControlChartData().IsControlChart());
    builder.SetTransformData(false);
    TablePtr const table(builder.Build());
    if (!table || table->Rows() != static_cast<int>(selection.VectorsInUse().size()))
        throw MissingSeries(project, selection, table.get());
    BuiltTables tables{Labelled(*table, selection), nullptr};
    tables.transformed.reset(builder.Transform(tables.plain.get()));
    if (request.transform.IsAsked() && !tables.transformed)
        throw NothingTransformed(selection);
    return tables;
}

void Build(BuildRequest request) {
    if (!request.picture.empty())
        request.style.isPng = IsPng(request.picture);
    if (!request.file.empty())
        CheckApart(request.file, request.project);
    auto const project = engine::Project::OpenToRead(request.project);
    Axis const axis = AxisFor(*project, request);
    SelectDataSeriesData selection(project, ModeOf(request), axis, -1, ProjectVector::ObsAndPred);
    FillSelection(project, request, selection);
    selection.SetScaleType(request.scale);
    auto const isOfBatches = [](ProjectVectorData const *data) { return data->GetProjectVector()->UseBatchIx(); };
    if (!request.batches.empty() && std::ranges::none_of(selection.VectorsInUse(), isOfBatches))
        SelectBatches(selection, NamesIn(request.batches));
    if (!request.only.empty() || !request.without.empty())
        SelectItems(selection, NamesIn(request.only.empty() ? request.without : request.only), !request.only.empty());

    SetTransform(project, request.transform, selection);
    if (request.isProbability && (request.picture.empty() || selection.GetMode() != SelectDataSeriesData::Normal ||
                                  selection.NumberOfSeries() != 1))
        throw UsageError("--probability shows one series, without --x and --y, in a picture: --plot FILE");

    if (!request.color.empty() && (request.transform.IsAsked() || request.isProbability))
        throw UsageError("--color is for pictures without --chart, --transform and --probability");

    ProjectDataBuilder builder(&selection);
    BuiltTables const tables = ReadTables(*project, request, selection, builder);
    // What is stretched or transformed is no date any more.
    TableDates const dates = request.scale == SelectDataSeriesData::ScaleNone && !tables.transformed
                                 ? TableDates(*project, RowsOf(selection), *tables.plain)
                                 : TableDates();
    if (!request.picture.empty()) {
        request.style.dates = dates;
        WritePicture(ScriptOf(project, request, selection, builder, tables), request.picture, request.project);
    }
    if (request.picture.empty() || !request.file.empty()) {
        Output output(request.file, request.project);
        WriteTable(tables.transformed ? *tables.transformed : *tables.plain, dates, request.format, output);
        output.Finish();
    }
}

} // namespace

void AddBuildCommand(CLI::App &program) {
    auto const request = std::make_shared<BuildRequest>();
    CLI::App *const command = program.add_subcommand("build", "Build the table or the picture of a selection");
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddAxisOption(*command, request->axis);
    command->add_option("--x", request->x, "The vector along the X axis")->type_name("VECTOR");
    command->add_option("--y", request->y, "The vector along the Y axis")->type_name("VECTOR");
    command->add_option("--series", request->series, "A series; may stand several times")
        ->type_name("VECTOR")
        ->allow_extra_args(false);
    command
        ->add_option_function<std::string>(
            "--scale",
            [request](std::string const &scale) {
                request->scale = SelectDataSeriesData::FromStringToScaleType(("Scale " + scale).c_str());
            },
            "Stretch each series (none)")
        ->check(CLI::IsMember(std::vector<std::string>{"none", "0-1", "-1-1"}));
    CLI::Option *const only = command->add_option("--only", request->only, "The items shown");
    command->add_option("--without", request->without, "Items left out")->excludes(only);
    command->add_option("--multiplier", request->multiplier,
                        "Limits of batches are so many standard deviations above their\naverage, for sums outside of "
                        "limits also below (3)");
    command->add_option("--batches", request->batches,
                        "The batches shown; of aligned batches also Average and Std.Dev.");
    for (CLI::Option *const list : {only, command->get_option("--without"), command->get_option("--batches")})
        list->type_name("NAME,...")->allow_extra_args(false);
    AddTransformOptions(*command, request->transform);
    command->add_flag("--probability", request->isProbability,
                      "The picture of a series against normal probabilities, such as of residuals");
    AddFormatOption(*command, request->format);
    command->add_option("-o,--output", request->file, "The file for the table, instead of standard output");
    CLI::Option *const picture = command->add_option("--plot", request->picture, "Draw into a file named .svg or .png");
    AddColourOption(*command, request->color)->needs(picture);
    AddPictureOptions(*command, request->style);
    command->footer(
        "A VECTOR is a name, what it is about, and its source: t, t:2, YPred:octane, XVar:1100nm@M2, "
        "VarDS:octane@DS1.\n"
        "The source is a model (M2), a data set (DS1) or the prediction set (PS). What is left out comes from the\n"
        "project's defaults: the newest model, its first (or last) component, the current variable or observation.\n"
        "A name that ends like a source needs one behind it: XVar:p@M2@M1. Names in lists are separated by commas; "
        "one\n"
        "that holds a comma stands in double quotes.\n"
        "Num counts the items.\n"
        "Without any vector the default one is shown. Two axes, or an axis and a series, are drawn against each "
        "other.\n"
        "A control chart of predicted observations takes its limits from those of the model. Rings mark what is "
        "outside; on\n"
        "charts of means also runs, with the number of the rule of Western Electric.\n"
        "A VECTOR to subtract or to divide by runs along the same items; Average:t:1 and Std.Dev.:t:1 are those of "
        "all\n"
        "aligned batches, found by the time of each observation. ewma averages with the settings of a chart; r2x "
        "scales\n"
        "by what the component explains, normalize to loadings of length 1.\n"
        "Example: dataseries build wine.project --x t:1 --y t:2 --plot scores.png\n"
        "         dataseries build wine.project --series t:1 --chart shewhart --subgroup 4 --plot chart.png\n"
        "         dataseries build oil.project --x YVar:octane --series YPred:octane --format csv -o fit.csv");
    command->callback([request] { Build(*request); });
}
