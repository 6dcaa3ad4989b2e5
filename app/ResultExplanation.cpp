#include "app/Explanation.h"
#include "app/Output.h"
#include "app/Reason.h"
#include "app/TableDates.h"
#include "building/CreateProjectData.h"
#include "platform/containers/Missing.h"
#include "platform/project/GetProjectData.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

namespace {

using Vector = ProjectVector;

// Which degrees of freedom a statistic has.
enum class Freedom { None, XDistance, YDistance, XResidual, YResidual, AfterX, AfterY, Range, Rounds };

Freedom FreedomOf(std::string_view name) {
    struct Group {
        Freedom freedom;
        std::string_view names; // each between blanks
    };
    static constexpr std::array<Group, 8> groups = {
        {{Freedom::XDistance, " DModX DModXPS DModXPS+ PModX PModXPS PModXPS+ "},
         {Freedom::YDistance, " DModY DModYPS PModY PModYPS "},
         {Freedom::XResidual, " XVarResSt XVarResPSSt "},
         {Freedom::YResidual, " YVarResSt YVarResPSSt RMSEE SerrL SerrU SerrLPS SerrUPS "},
         {Freedom::AfterX, " S2X R2XAdj R2XAdjcum S2VX R2VXAdj R2VXAdjcum MPowX "},
         {Freedom::AfterY, " S2Y R2YAdj R2YAdjcum S2VY R2VYAdj R2VYAdjcum "},
         {Freedom::Range, " T2Range T2RangePS "},
         {Freedom::Rounds, " YPredPSConfInt+ YPredPSConfInt- "}}};
    std::string const sought = " " + std::string(name) + " ";
    for (Group const &group : groups)
        if (group.names.find(sought) != std::string_view::npos)
            return group.freedom;
    return name.ends_with("cvSE") && name != "YPredErrcvSE" ? Freedom::Rounds : Freedom::None;
}

std::string Number(double value) {
    char buffer[32];
    return std::string(NumberText(static_cast<float>(value), 6, buffer));
}

std::string Count(std::size_t count, std::string const &item) {
    char const *const ending = count == 1 ? "" : item.ends_with("ch") ? "es" : "s";
    return std::to_string(count) + " " + item + ending;
}

// What one argument string gets.
class ResultReader {
public:
    ResultReader(engine::Project const &project, NamedSeries const &series)
        : m_project(project), m_series(series), m_vector(*series.vector), m_model(series.source.model.get()) {
        m_vector.ReadArguments(series.arguments.c_str(), m_arguments);
    }

    std::vector<ExplainedPart> Read() {
        std::string const reason = Ask();
        if (!reason.empty())
            return {{"result", "", "nothing. " + reason}};
        std::vector<ExplainedPart> parts = {
            {"result", "", Shape()}, {"values", "", Range()}, {"missing", "", Missing()}};
        for (auto const &[part, meaning] : {std::pair("freedom", DegreesOfFreedom()), std::pair("units", Units())})
            if (!meaning.empty())
                parts.push_back({part, "", meaning});
        return parts;
    }

private:
    // Fills the table, or tells why there is none.
    std::string Ask() {
        try {
            m_table = ProjectDataUtilities::CreateProjectData(m_project).GetProjectData(
                std::string(m_vector.GetName()) + " " + m_series.arguments, m_vector.GetType());
        } catch (NCError const &error) {
            return error.what();
        }
        bool const any = m_table && m_table->Rows() > 0 && m_table->Columns() > 0;
        return any ? "" : ReasonForNothing(m_project, m_vector, m_series.source, m_series.arguments);
    }

    std::string Shape() const {
        return Count(static_cast<std::size_t>(m_table->Rows()), "row") + ", " + m_table->GetRowName(1) +
               (m_table->Rows() > 1 ? " and so on" : "") + ", of " +
               Count(static_cast<std::size_t>(m_table->Columns()), ItemOf(m_vector.GetType()));
    }

    // The value, or the date, of a cell.
    std::string Cell(TableDates const &dates, std::size_t row, std::size_t item, float value) const {
        std::string const date = dates.Text(row, item);
        return date.empty() ? Number(value) : date;
    }

    std::string Range() const {
        TableDates const dates(
            m_project,
            std::vector(static_cast<std::size_t>(m_table->Rows()), DrawnSeries{&m_vector, m_series.arguments}),
            *m_table);
        struct {
            float value;
            std::string text;
        } least{}, most{};
        for (int row = 1; row <= m_table->Rows(); ++row) {
            auto const values = m_table->GetMatrix().Row(row);
            for (std::size_t item = 0; item < values.size(); ++item) {
                float const value = values[item];
                if (IsMissing(value))
                    continue;
                std::size_t const at = static_cast<std::size_t>(row - 1);
                if (least.text.empty() || value < least.value)
                    least = {value, Cell(dates, at, item, value)};
                if (most.text.empty() || value > most.value)
                    most = {value, Cell(dates, at, item, value)};
            }
        }
        return least.text.empty() ? "none" : "from " + least.text + " to " + most.text;
    }

    // Tells causes one after the other; what one explains is not asked of the next.
    class Causes {
    public:
        explicit Causes(ProjectData const &table) {
            auto const row = table.GetMatrix().Row(1);
            std::transform(row.begin(), row.end(), std::back_inserter(m_open), IsMissing);
        }

        template <typename Applies>
        void Explain(std::string const &text, Applies applies) {
            std::size_t count = 0;
            for (std::size_t item = 0; item < m_open.size(); ++item)
                if (m_open[item] && applies(item)) {
                    m_open[item] = false;
                    ++count;
                }
            if (count > 0)
                m_text += "\n" + std::to_string(count) + " " + text;
        }
        // By a table of the same items that has no value there in any row.
        void Explain(std::string const &text, TablePtr const &table) {
            if (table && table->Columns() == static_cast<int>(m_open.size()))
                Explain(text, [&](std::size_t item) {
                    for (int row = 1; row <= table->Rows(); ++row)
                        if (!IsMissing(table->GetMatrix().Row(row)[item]))
                            return false;
                    return true;
                });
        }
        std::string const &Text() const { return m_text; }

    private:
        std::vector<bool> m_open;
        std::string m_text;
    };

    std::string Missing() const {
        std::size_t missing = 0;
        for (int row = 1; row <= m_table->Rows(); ++row)
            for (float const value : m_table->GetMatrix().Row(row))
                missing += IsMissing(value) ? 1 : 0;
        auto const cells = static_cast<std::size_t>(m_table->Rows()) * static_cast<std::size_t>(m_table->Columns());
        if (missing == 0)
            return "none of " + std::to_string(cells);
        std::string const told = std::to_string(missing) + " of " + std::to_string(cells);
        if (m_table->Rows() > 1)
            return told;
        Causes causes(*m_table);
        if (!m_model)
            causes.Explain("missing there", [](std::size_t) { return true; });
        else if (m_vector.GetNumberType() == Vector::NumberIdentifier)
            causes.Explain("whose identifier is no number", [](std::size_t) { return true; });
        else if (m_vector.GetType() == Vector::VectorTypeVariablesScores)
            ExplainObservations(causes);
        else if (m_vector.GetType() == Vector::VectorTypeObservationsLoadings)
            ExplainVariables(causes);
        causes.Explain(OnRounds() ? "that too few cross-validation rounds give"
                                  : "that can't be computed: a division by zero, or no degree of freedom",
                       [](std::size_t) { return true; });
        return told + ":" + causes.Text();
    }

    bool OnRounds() const {
        return m_vector.OnlyCrossValidated() ||
               std::string_view(m_vector.GetName()).find("cv") != std::string_view::npos;
    }

    void ExplainObservations(Causes &causes) const {
        GetProjectData const statistics(m_project);
        bool const predicted = m_vector.GetObsPredType() == Vector::Predicted;
        int const model = m_model->number;
        IntList const first{1};
        auto const xCells = predicted ? &GetProjectData::GetXVarPS : &GetProjectData::GetXVar;
        auto const yCells = [&](ColumnTerms const *terms) {
            return predicted ? statistics.GetYVarPS(model, true, true, terms, -1, true)
                             : statistics.GetYVar(model, true, true, terms, -1);
        };
        causes.Explain("without any observed X variable",
                       predicted ? statistics.GetTPS(model, &first, -1) : statistics.GetT(model, &first, -1));
        if (m_vector.IsXVector() || m_vector.IsYVector()) {
            ColumnTerms const terms = m_vector.NamedTerms(m_project, model, m_arguments);
            causes.Explain("where the variable is missing, or outside the domain of its transformation",
                           m_vector.IsYVector() ? yCells(&terms) : (statistics.*xCells)(model, true, true, &terms, -1));
        }
        if (m_model->sizeYVariables > 0)
            causes.Explain("without any observed response", yCells(nullptr));
    }

    void ExplainVariables(Causes &causes) const {
        auto const constant = m_project.QualityOf(m_model->number).constantTerms;
        causes.Explain("of variables that do not vary", [&](std::size_t item) {
            return std::ranges::find(constant, m_table->GetColumnName(static_cast<int>(item) + 1)) != constant.end();
        });
        if (m_vector.GetNumberType() != Vector::NumberObsOrVar || m_vector.GetObsPredType() == Vector::Predicted)
            return;
        ObservationInfos const observation(1, ObservationInfo(static_cast<std::uint32_t>(m_arguments.number)));
        GetProjectData const statistics(m_project);
        for (TablePtr const &cells : {statistics.GetXObs(m_model->number, true, true, &observation, TriState::No),
                                      statistics.GetYObs(m_model->number, true, true, &observation)})
            causes.Explain("that the observation lacks", cells);
    }

    std::string DegreesOfFreedom() const {
        auto const model =
            m_model ? boost::dynamic_pointer_cast<ProjectionModel const>(m_project.GetModel(m_model->number)) : nullptr;
        Freedom const kind = FreedomOf(m_vector.GetName());
        if (!model || kind == Freedom::None)
            return {};
        int const terms = model->GetXColumnTerms().Size();
        int const xSide = m_model->predictiveComponents + m_model->xSideOrthogonalComponents;
        bool const isOfSize = m_vector.HasOneComponent();
        int const components = isOfSize ? m_arguments.component + m_model->xSideOrthogonalComponents : xSide;
        double const xRows = model->GetRowDF(components, false);
        double const yRows = model->GetRowDF(components, true);
        double const columns = std::max(0, terms - components);
        double const responses = m_model->sizeYVariables;
        std::string const used = " after " + Count(static_cast<std::size_t>(components), "component");
        switch (kind) {
        case Freedom::XDistance:
            return Number(columns) + " and " + Number(columns * xRows) + ": columns, and columns times " +
                   Number(xRows) + " rows," + used;
        case Freedom::YDistance:
            return Number(responses) + " and " + Number(responses * yRows) + ": responses, and responses times " +
                   Number(yRows) + " rows," + used;
        case Freedom::XResidual:
            return Number(xRows) + " of the rows, " + Number(columns) + " of the columns," + used;
        case Freedom::YResidual:
            return Number(yRows) + " of the rows" + used;
        case Freedom::AfterX:
        case Freedom::AfterY:
            return AfterComponents(*model, kind == Freedom::AfterY);
        case Freedom::Range: {
            int const range = ComponentsInRange(*m_model, m_arguments);
            return Number(range) + " and " + Number(m_model->sizeObservations - range) +
                   ": components, and observations less components";
        }
        default:
            return OfRounds(*model);
        }
    }

    // Of one component in the overall order, or of each.
    std::string AfterComponents(ProjectionModel const &model, bool ofY) const {
        int const all = m_model->SizeComponents();
        int const asked = m_arguments.component;
        int const last = m_vector.HasOneComponent() ? asked : all;
        std::string rows, columns;
        for (int first = m_vector.HasOneComponent() ? asked : 1; first <= last; ++first) {
            int const used = ofY && first > 0
                                 ? std::min(first, m_model->predictiveComponents) + m_model->xSideOrthogonalComponents
                                 : std::min(first, all - m_model->ySideOrthogonalComponents);
            rows += (rows.empty() ? "" : ", ") + Number(model.GetRowDF(used, ofY));
            columns += (columns.empty() ? "" : ", ") + Number(std::max(0, model.GetXColumnTerms().Size() - used));
        }
        return rows + " of the rows" + (ofY ? "" : "; " + columns + " of the columns");
    }

    std::string OfRounds(ProjectionModel const &model) const {
        if (m_vector.HasOneComponent() && m_vector.GetComponentType() != Vector::ComponentPredictive)
            return "cross-validation rounds that have the component, less 1";
        int const component = m_vector.HasOneComponent() ? m_arguments.component : -1;
        return Number(model.GetCVStdDevDF(component)) + ": cross-validation rounds that have the component, less 1";
    }

    // By the flags, or what the help says.
    std::string Units() const {
        if (m_vector.UseUnscalingTransform() && !std::string_view(m_vector.GetName()).ends_with("St"))
            return m_arguments.backTransformed ? "those of the data set"
                   : m_arguments.unscaled      ? "those of the data set after the transformation"
                                               : "scaled as in the workset";
        std::string help = m_vector.GetHelpString();
        std::ranges::replace(help, '\n', ' ');
        for (std::string_view const start : {"In the units ", "In units ", "in the units ", "In squared units ",
                                             "In days ", "In 1 by ", "Without unit", "without unit"})
            if (std::size_t const at = help.find(start); at != std::string::npos)
                return help.substr(at, help.find('.', at) - at);
        return {};
    }

    engine::Project const &m_project;
    NamedSeries const &m_series;
    Vector const &m_vector;
    ModelInfo const *m_model;
    Vector::Arguments m_arguments;
    TablePtr m_table;
};

} // namespace

std::vector<ExplainedPart> ExplainResult(engine::Project const &project, NamedSeries const &series) {
    return ResultReader(project, series).Read();
}
