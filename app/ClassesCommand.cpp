#include "app/ClassesScript.h"
#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Listing.h"
#include "engine/Project.h"

#include <CLI/CLI.hpp>

#include <array>

namespace {

struct ClassesRequest {
    std::filesystem::path project;
    int model = 0;
    std::string by;
    bool roc = false;
    Format format = Format::Text;
    std::filesystem::path picture;
    PlotStyle style;
};

// What predicted the classes.
struct By {
    char const *option;
    char const *text;
    engine::ClassPredictions const *predictions;
};

std::vector<By> PredictionsOf(engine::Classification const &classes, ClassesRequest const &request) {
    auto const found = [](auto const &predictions) { return predictions ? &*predictions : nullptr; };
    std::array const all = {By{"cv", "by cross-validation", found(classes.crossValidated)},
                            By{"fit", "by fit", &classes.fitted},
                            By{"predictions", "of the prediction set", found(classes.predicted)}};
    std::vector<By> asked;
    for (By const &by : all)
        if (by.predictions && (request.by.empty() || request.by == by.option))
            asked.push_back(by);
    if (asked.empty())
        throw Problem(
            request.by == "cv"
                ? ExceptionMessage::translate("Model {1} is not cross-validated.") % request.model
                : ExceptionMessage::translate("The prediction set has no observation of a class of model {1}, "
                                              "or there is none.") %
                      request.model);
    return asked;
}

// A row for each true class.
Listing TablesOf(engine::Classification const &classes, std::vector<By> const &asked) {
    std::vector<std::string> headings = {"by", "class", "observations"};
    for (std::string const &name : classes.classes)
        headings.push_back("as " + name);
    headings.insert(headings.end(), {"sensitivity", "specificity", "roc_area"});
    Listing listing(std::move(headings));
    for (By const &by : asked)
        for (std::size_t each = 0; each < classes.classes.size(); ++each) {
            engine::ConfusionTable const &table = by.predictions->table;
            std::vector<Listing::Cell> row = {by.option, classes.classes[each], table.SizeOf(each)};
            for (std::size_t as = 0; as < table.Classes(); ++as)
                row.push_back(table.Count(each, as));
            // The curve of the first of two classes is that of the second too.
            std::size_t const curve = std::min(each, by.predictions->curves.size() - 1);
            for (double const share :
                 {table.Sensitivity(each), table.Specificity(each), by.predictions->curves[curve].area})
                row.push_back(share);
            listing.Add(std::move(row));
        }
    return listing;
}

Listing CurvesOf(engine::Classification const &classes, std::vector<By> const &asked) {
    Listing listing({"by", "class", "false_positives", "true_positives"});
    for (By const &by : asked)
        for (std::size_t each = 0; each < by.predictions->curves.size(); ++each)
            for (engine::RocCurve::Point const &point : by.predictions->curves[each].points)
                listing.Add({by.option, classes.classes[each], point.falsePositives, point.truePositives});
    return listing;
}

void Draw(ClassesRequest const &request, engine::Classification const &classes, By const &by) {
    PlotStyle style = request.style;
    style.isPng = IsPng(request.picture);
    WritePicture(request.roc ? RocScript(classes.classes, by.predictions->curves, by.text, style)
                             : ConfusionScript(classes.classes, by.predictions->table, by.text, style),
                 request.picture, request.project);
}

void Classes(ClassesRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    engine::Classification const classes = project->ClassesOf(request.model);
    std::vector<By> const asked = PredictionsOf(classes, request);
    if (!request.picture.empty())
        Draw(request, classes, asked.front());
    Output output;
    (request.roc ? CurvesOf(classes, asked) : TablesOf(classes, asked)).Write(output, request.format);
    for (By const &by : asked)
        if (request.format == Format::Text && !request.roc)
            output << "Misclassified " << by.text << ": " << std::to_string(by.predictions->table.Misclassified())
                   << " of " << std::to_string(by.predictions->table.Size()) << " observations.\n";
    output.Finish();
}

} // namespace

void AddClassesCommand(CLI::App &program) {
    auto const request = std::make_shared<ClassesRequest>();
    CLI::App *const command = program.add_subcommand("classes", "Tell how well a model tells classes apart");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--model", request->model, "The number of a model whose responses are classes")
        ->required()
        ->type_name("N");
    command
        ->add_option("--by", request->by,
                     "Predicted by cross-validation (cv), by the fit, or in\nthe prediction set (all that there are)")
        ->check(CLI::IsMember({"cv", "fit", "predictions"}));
    command->add_flag("--roc", request->roc, "The ROC curves of each class against the rest");
    command->add_option("--plot", request->picture,
                        "Draw the first table, or its curves, into a file named .svg or .png");
    AddFormatOption(*command, request->format);
    AddPictureOptions(*command, request->style);
    command->footer(
        "An observation is taken for the class with the largest predicted response. Sensitivity is the share of a\n"
        "class that is taken for it, specificity that of all others that is not. The area below a ROC curve is the\n"
        "chance that an observation of the class has a larger prediction than one of the others.\n"
        "Example: dataseries classes wine.project --model 1 --plot classes.png\n"
        "         dataseries classes wine.project --model 1 --by cv --roc --plot roc.svg");
    command->callback([request] { Classes(*request); });
}
