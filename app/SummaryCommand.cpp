#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Listing.h"
#include "app/PlotScript.h"
#include "engine/Project.h"
#include "platform/GetProjectData.h"
#include "platform/Missing.h"

#include <CLI/CLI.hpp>

#include <limits>

namespace {

struct SummaryRequest {
    std::filesystem::path project;
    int model = 0;
    Format format = Format::Text;
    std::filesystem::path picture;
};

// A statistic with one value for each component. Null tables are left out.
struct Column {
    std::string heading;
    TablePtr table;
    int row = 1;
};

Listing::Cell CellOf(Column const &column, int component) {
    NCDataMatrix<float> const &matrix = column.table->GetMatrix();
    float const value = component <= matrix.Columns() ? matrix(column.row, component, missingValue) : missingValue;
    return IsMissing(value) ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(value);
}

std::vector<Column> ColumnsOf(engine::Project const &project, int model) {
    GetProjectData const statistics(project);
    std::vector<Column> columns;
    auto const add = [&columns](char const *heading, TablePtr table) {
        if (table)
            columns.push_back({heading, std::move(table)});
    };
    add("R2X", statistics.GetR2X(model));
    add("R2X(cum)", statistics.GetR2XCum(model));
    add("Eigenvalue", statistics.GetEigenValues(model));
    add("R2Y", statistics.GetR2Y(model));
    add("R2Y(cum)", statistics.GetR2YCum(model));
    add("Q2", statistics.GetQ2(model));
    add("Q2(cum)", statistics.GetQ2Cum(model));
    return columns;
}

// The errors of each response over the components: one column of the summary for each.
void AddErrors(engine::Project const &project, int model, std::vector<Column> &columns) {
    GetProjectData const statistics(project);
    auto const object = project.GetModel(model);
    int const responses = object ? object->GetYColumnTerms().Size() : 0;
    auto const heading = [&](char const *name, int response) {
        std::string const suffix =
            responses == 1 ? ""
                           : "(" + object->GetYColumnTerms()[response].GetPrimaryName(project.GetVariables()) + ")";
        return name + suffix;
    };
    if (TablePtr const errors = statistics.GetRMSEE(model, nullptr))
        for (int response = 1; response <= responses; ++response) {
            NCDataMatrix<float> row(1, errors->Rows());
            for (int component = 1; component <= errors->Rows(); ++component)
                row(1, component) = errors->GetMatrix()(component, response, missingValue);
            ColumnIDs::IntegerList numbers(errors->Rows());
            columns.push_back(
                {heading("RMSEE", response),
                 std::make_unique<ProjectData>(RowIDs("RMSEE", project.shared_from_this()),
                                               ColumnIDs(numbers, project.shared_from_this(), model), row)});
        }
    for (int response = 1; response <= responses; ++response)
        if (TablePtr errors = statistics.GetRMSEcvPerComponent(model, nullptr))
            columns.push_back({heading("RMSEcv", response), std::move(errors), response});
}

void Draw(SummaryRequest const &request, engine::Project const &project) {
    std::string const kind = request.picture.extension().string();
    if (kind != ".png" && kind != ".svg")
        throw UsageError("The picture " + request.picture.string() + " is neither .svg nor .png");
    GetProjectData const statistics(project);
    TablePtr table = statistics.GetR2XCum(request.model);
    for (TablePtr const &further : {statistics.GetR2YCum(request.model), statistics.GetQ2Cum(request.model)})
        if (table && further)
            table->InterSection(*further);
    if (!table)
        throw Problem(ExceptionMessage::translate("Model {1} has no components to draw.") % request.model);
    PlotStyle style;
    style.isPng = kind == ".png";
    std::string const script = PlotScript(*table, ProjectVector::VectorTypeComponent, style);
    DraftFile file(request.picture);
    RunGnuplot(script, file.Descriptor());
    file.Commit();
}

void Summary(SummaryRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    int const model = request.model;
    auto const info = project->GetModelInfo(model);
    if (!info)
        throw Problem(ExceptionMessage::translate("There is no model {1}.") % model);
    std::vector<Column> columns = ColumnsOf(*project, model);
    if (columns.empty())
        throw Problem(ExceptionMessage::translate("Model {1} has no components.") % model);
    ColumnIDs const components = columns.front().table->GetColumnIDs();
    AddErrors(*project, model, columns);
    std::vector<std::string> headings = {"component"};
    for (Column const &column : columns)
        headings.push_back(column.heading);
    Listing listing(headings);
    for (int component = 1; component <= components.Size(); ++component) {
        std::vector<Listing::Cell> row = {components.GetName(component)};
        for (Column const &column : columns)
            row.push_back(CellOf(column, component));
        listing.Add(std::move(row));
    }
    if (!request.picture.empty())
        Draw(request, *project);
    Output output;
    listing.Write(output, request.format);
    output.Finish();
}

} // namespace

void AddSummaryCommand(CLI::App &program) {
    auto const request = std::make_shared<SummaryRequest>();
    CLI::App *const command = program.add_subcommand("summary", "Tell what the components of a model explain");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--model", request->model, "The number of the model")->required()->type_name("N");
    command->add_option("--plot", request->picture, "Draw the cumulative forms into a file named .svg or .png");
    AddFormatOption(*command, request->format);
    command->footer(
        "R2 is what a component explains, Q2 what of it is predicted when observations are left out, (cum)\n"
        "what all up to it do. RMSEE and RMSEcv are errors of the responses in their own units, fitted\n"
        "and cross-validated.\n"
        "Example: dataseries summary oil.project --model 1 --plot summary.png");
    command->callback([request] { Summary(*request); });
}
