#include "selection/SavedSelection.h"

#include "building/TransformationData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/storage/ConfigurationSection.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectionSections_internal.h"
#include "utilities/BatchConverter.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace {

using Names = std::vector<std::string>;
using Losses = std::vector<std::string>;

constexpr char const *namesSection = "Names";
constexpr char const *labelKey = "Label";
constexpr char const *moreSection = "More"; // settings that the section of a selection does not hold
constexpr char const *crossSection = "DataVector";
constexpr char const *divideSection = "DivideVector";
constexpr char separator = '\n';

// What the numbers under a key of a specification count.
enum class Items { Variables, Observations, Rows, XTerms, YTerms, Batches, Phases, Identifiers };

struct Numbered {
    char const *key;
    Items items;
};

std::vector<Numbered> NumberedKeys(ProjectVector const &vector) {
    std::vector<Numbered> keys;
    bool const isOfScores = vector.GetType() == ProjectVector::VectorTypeVariablesScores;
    switch (vector.GetNumberType()) {
    case ProjectVector::NumberObsOrVar:
        keys.push_back({"NumberID", isOfScores ? Items::Variables : Items::Observations});
        break;
    case ProjectVector::NumberYVariable:
    case ProjectVector::NumberBatchYVariable:
    case ProjectVector::NumberBatchVIPPhase:
        keys.push_back({"NumberID", Items::YTerms});
        break;
    case ProjectVector::NumberXVariable:
    case ProjectVector::NumberBatchXVariable:
        keys.push_back({"NumberID", Items::XTerms});
        break;
    case ProjectVector::NumberXAndYVariable:
        keys.push_back({"NumberID", Items::XTerms});
        keys.push_back({"NumberID2", Items::YTerms});
        break;
    case ProjectVector::NumberIdentifier:
        keys.push_back({"NumberID", Items::Identifiers});
        break;
    default:
        break;
    }
    if (vector.GetNumberType() == ProjectVector::NumberBatchVIPPhase ||
        vector.GetNumberType() == ProjectVector::NumberBatchVIPSecond)
        keys.push_back({"NumberID2", Items::Phases});
    if (vector.UseBatchIx())
        keys.push_back({"BatchIx", Items::Batches});
    if (vector.IsContribution()) {
        keys.push_back({"YVar", Items::YTerms});
        keys.push_back({"Obs1", Items::Rows});
        keys.push_back({"Obs2", Items::Rows});
    }
    return keys;
}

Names NamesOf(ColumnTerms const &terms, NCVariables const &variables) {
    Names names;
    for (ColumnTerm const &term : terms)
        names.push_back(term.GetPrimaryName(variables));
    return names;
}

Names FirstTexts(VarObs const &list) {
    VarObs::Alias const *const primary = list.GetAlias(1);
    return primary ? primary->texts : Names();
}

Names Headings(VarObs const &list) {
    Names names;
    for (int alias = 1; alias <= list.SizeAliases(); ++alias)
        names.push_back(list.GetAlias(alias)->name);
    return names;
}

Names BatchNames(NCProject const &project, int model, bool predicted) {
    Names names;
    if (auto const predictions = predicted ? project.GetPredictions(model, false) : nullptr; predicted && !predictions)
        return names;
    ProjectUtilities::BatchConverter const batches(project, model, predicted);
    std::vector<int> indexes;
    for (int index = 1; index <= batches.Size(); ++index)
        indexes.push_back(index);
    batches.FromIndexToBatch(indexes, names);
    return names;
}

Names PhaseNames(NCProject const &project, int model) {
    auto const info = project.GetDataSetInfo(ModelUtilities::GetBatchLevelSourceDS(project, model));
    return info ? info->GetPhaseInfoVector() : Names();
}

// The names that the numbers from 1 stand for.
Names NamesOf(Items items, ProjectVectorData const &data, NCProject const &project) {
    ModelInfo const *const info = data.GetModelInfo();
    int const number = info ? info->number : 0;
    ProjectVector const &vector = *data.GetProjectVector();
    auto const model = info ? project.GetModel(number) : nullptr;
    switch (items) {
    case Items::Variables:
        return FirstTexts(project.GetVariables());
    case Items::Observations:
        return FirstTexts(project.GetObservations());
    case Items::Rows: {
        Names names;
        if (auto const source = data.GetDataSource(project))
            for (ObservationInfo const &row : source->GetObservations())
                names.push_back(project.GetObservations().GetText(row.GetUniqueID(), 1));
        return names;
    }
    case Items::XTerms:
        return model ? NamesOf(vector.XTermsOf(project, number), project.GetVariables()) : Names();
    case Items::YTerms:
        return model ? NamesOf(model->GetYColumnTerms(), project.GetVariables()) : Names();
    case Items::Batches:
        return model ? BatchNames(project, number, vector.GetObsPredType() == ProjectVector::Predicted) : Names();
    case Items::Phases:
        return PhaseNames(project, number);
    case Items::Identifiers:
        return vector.GetType() == ProjectVector::VectorTypeObservationsLoadings ? Headings(project.GetVariables())
                                                                                 : Headings(project.GetObservations());
    }
    return {};
}

char const *WordFor(Items items) {
    switch (items) {
    case Items::Variables:
    case Items::XTerms:
        return "variable";
    case Items::YTerms:
        return "response";
    case Items::Batches:
        return "batch";
    case Items::Phases:
        return "phase";
    case Items::Identifiers:
        return "identifier";
    default:
        return "observation";
    }
}

// Names of a list stand in lines; one that holds a line break itself is written with an escape.
std::string Escaped(std::string const &name) {
    std::string text;
    for (char const c : name)
        text += c == separator ? "\\n" : c == '\\' ? "\\\\" : std::string(1, c);
    return text;
}

std::string Unescaped(std::string const &text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\\' || i + 1 == text.size())
            name += text[i];
        else
            name += text[++i] == 'n' ? separator : text[i];
    return name;
}

void WriteNames(ProjectVectorData const &data, NCProject const &project,
                ProjectUtilities::DefaultSelection const *defaults, ConfigurationSection &section) {
    ProjectVector const *const vector = data.GetProjectVector();
    if (!vector || vector->IsNumVector())
        return;
    // A reader takes no identifier that is left open.
    if (vector->GetNumberType() == ProjectVector::NumberIdentifier && data.GetNumberID() == ProjectVectorData::NotSet)
        section.WriteKey("NumberID", static_cast<int>(data.GetNumber(defaults)));
    auto const named = section.CreateSubSection(namesSection);
    if (defaults)
        named->WriteKey(labelKey, data.GetFormattedName(defaults, project.GetPreferredVariableAlias(), false));
    for (Numbered const &numbered : NumberedKeys(*vector)) {
        std::list<int> numbers;
        section.ReadKey(numbered.key, numbers);
        if (std::ranges::none_of(numbers, [](int number) { return number > 0; }))
            continue;
        Names const names = NamesOf(numbered.items, data, project);
        Names written;
        for (int const number : numbers) {
            bool const isNamed = number >= 1 && number <= static_cast<int>(names.size());
            written.push_back(isNamed ? Escaped(names[static_cast<std::size_t>(number - 1)]) : "");
        }
        named->WriteKey(numbered.key, written, separator);
    }
}

// A specification in a copy of what was saved, while its numbers are brought to those of the project.
class Resolver {
public:
    Resolver(NCProject const &project, ConfigurationSection &section) : m_project(project), m_section(section) {
        if (auto const named = section.OpenSubSection(namesSection))
            m_named = named->Clone();
        section.ReadKey("ProjectVector", m_label);
        if (m_named)
            m_named->ReadKey(labelKey, m_label);
    }

    std::string const &Label() const { return m_label; }

    // False, with the reason, when an item is not there by which the specification stands or falls.
    bool Resolve(Losses &losses) {
        if (!FindVector())
            return true; // the reader tells why
        LowerRange(losses);
        LowerPredictive(losses);
        if (!m_named)
            return true;
        auto const keys = NumberedKeys(*m_data.GetProjectVector());
        return std::ranges::all_of(keys, [&](Numbered const &numbered) { return ResolveNumbers(numbered, losses); });
    }

private:
    bool FindVector() {
        std::string name, type;
        int source = 0, number = 0;
        m_section.ReadKey("ProjectVector", name);
        m_section.ReadKey("ProjectVectorType", type);
        m_section.ReadKey("DataType", source);
        boost::shared_ptr<ModelInfo const> model;
        if (m_section.ReadKey("Model", number))
            model = m_project.GetModelInfo(number);
        ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
        auto const found = catalogue.Find(name.c_str(), ProjectVector::ToVectorTypeEnum(type.c_str()),
                                          static_cast<ProjectVector::DataTypeEnum>(source), model.get());
        if (found == catalogue.end())
            return false;
        m_data.SetProjectVector(*found);
        if (model)
            m_data.SetModelInfoPtr(model);
        else if (m_section.ReadKey("Dataset", number))
            m_data.SetDataSet(number);
        return true;
    }

    // Components that the model does not have any more.
    void LowerRange(Losses &losses) {
        ProjectVector const &vector = *m_data.GetProjectVector();
        ModelInfo const *const model = m_data.GetModelInfo();
        if (!model || (vector.GetNumberType() != ProjectVector::NumberComponentRange &&
                       vector.GetNumberType() != ProjectVector::NumberBatchComponentRange))
            return;
        int const last = ProjectVector::SelectMaxComponents(vector.GetDoubleCompComponentType(2), *model);
        int number = 0;
        for (char const *const key : {"NumberID", "NumberID2"})
            if (last > 0 && m_section.ReadKey(key, number) && number > last) {
                m_section.WriteKey(key, last);
                losses.push_back(Lowered(number, last));
            }
    }

    // A score or loading of a predictive component, whose number may be that of an orthogonal one elsewhere.
    void LowerPredictive(Losses &losses) {
        ProjectVector const &vector = *m_data.GetProjectVector();
        ModelInfo const *const model = m_data.GetModelInfo();
        int component = 0;
        if (!model || vector.GetComponentType() != ProjectVector::ComponentPredictive ||
            vector.PredictiveComponentDefaultsToLast() || !m_section.ReadKey("PredictiveComp", component))
            return;
        int const last = model->SizePredictiveComponents();
        if (last > 0 && component > last) {
            m_section.WriteKey("PredictiveComp", last);
            losses.push_back(Lowered(component, last));
        }
    }

    std::string Lowered(int component, int last) const {
        return (ExceptionMessage::translate("{1}: there is no component {2} any more; component {3} stands in.") %
                m_label % component % last)
            .Text();
    }

    std::string Missing(Numbered const &numbered, std::string const &name) const {
        return (ExceptionMessage::translate("{1}: there is no {2} \"{3}\" any more.") % m_label %
                WordFor(numbered.items) % name)
            .Text();
    }

    bool ResolveNumbers(Numbered const &numbered, Losses &losses) {
        std::list<int> numbers;
        Names written;
        if (!m_section.ReadKey(numbered.key, numbers) || !m_named->ReadKey(numbered.key, written, separator) ||
            written.size() != numbers.size())
            return true;
        Names const names = NamesOf(numbered.items, m_data, m_project);
        std::unordered_map<std::string_view, int> numberOf;
        for (std::size_t i = names.size(); i > 0; --i)
            numberOf[names[i - 1]] = static_cast<int>(i);
        std::list<int> found;
        auto name = written.begin();
        for (int const number : numbers) {
            std::string const wanted = Unescaped(*name++);
            bool const isSame = number >= 1 && number <= static_cast<int>(names.size()) &&
                                names[static_cast<std::size_t>(number - 1)] == wanted;
            auto const known = numberOf.find(wanted);
            if (isSame || wanted.empty())
                found.push_back(number);
            else if (known != numberOf.end())
                found.push_back(known->second);
            else
                losses.push_back(Missing(numbered, wanted));
        }
        m_section.WriteKey(numbered.key, found);
        return !found.empty();
    }

    NCProject const &m_project;
    ConfigurationSection &m_section;
    std::unique_ptr<ConfigurationSection> m_named;
    std::string m_label;
    ProjectVectorData m_data;
};

// The specifications of a saved selection, in the order of its vectors and then those of its transformation.
template <typename Visit>
void ForEachVector(ConfigurationSection &section, Visit visit) {
    auto const one = [&visit](ConfigurationSection &parent, char const *name, int index = 1) {
        if (auto const child = parent.OpenSubSection(name, index))
            visit(*child);
    };
    one(section, SelectionSections::xAxis);
    one(section, SelectionSections::yAxis);
    for (int index = 1; index <= section.CountSubSections(SelectionSections::series); ++index)
        one(section, SelectionSections::series, index);
    if (auto const transformation = section.OpenSubSection(SelectionSections::transformation)) {
        one(*transformation, crossSection);
        one(*transformation, divideSection);
    }
}

// A copy of what was saved, in which everything can be read that is there.
class Restoration {
public:
    Restoration(ConfigurationSection const &saved, std::optional<int> model, SelectDataSeriesData &selection,
                Losses &losses)
        : m_root(saved.Clone()), m_section(m_root->OpenSubSection(SelectionSections::selection)),
          m_selection(selection), m_project(selection.GetProject()), m_losses(losses) {
        if (!m_section || !m_project)
            return;
        int active = 0;
        m_section->ReadKey("ActiveModel", active);
        if (!model && active != 1)
            return;
        m_section->WriteKey("ActiveModel", 0);
        int const moved = model ? *model : m_project->GetActiveModelNumber();
        ForEachVector(*m_section, [moved](ConfigurationSection &vector) {
            if (int number = 0; vector.ReadKey("Model", number))
                vector.WriteKey("Model", moved);
        });
    }

    bool Read() {
        if (!m_section || !m_project) {
            m_selection.Clear();
            return false;
        }
        CheckAxis(SelectionSections::xAxis);
        CheckAxis(SelectionSections::yAxis);
        for (int index = 1; index <= m_section->CountSubSections(SelectionSections::series);)
            if (CanReadSeries(*m_section->OpenSubSection(SelectionSections::series, index)))
                ++index;
            else
                m_section->DeleteSubSection(SelectionSections::series, index);
        std::string const transformation = TransformationName();
        CheckTransformation();
        if (IsEmptied() || !m_selection.ReadSection(m_section.get())) {
            m_selection.Clear();
            return false;
        }
        if (m_selection.GetTransformationData().GetTransformationType() == TransformationData::NoTransformation &&
            transformation != TransformationName(TransformationData::NoTransformation) && !m_transformationIsLost)
            Tell(ExceptionMessage::translate("The transformation \"{1}\" does not fit what is left.") % transformation);
        RestoreMore();
        CheckBatch();
        return true;
    }

private:
    void Tell(ExceptionMessage const &message) { m_losses.push_back(message.Text()); }

    void Tell(std::string const &label, NCError const &error) {
        Tell(ExceptionMessage::translate("{1}: {2}") % label % error.what());
    }

    static std::string TransformationName(TransformationData::TransformationType type) {
        return TransformationData::GetLocalizedTransformationType(type);
    }

    std::string TransformationName() const {
        std::string type;
        if (auto const stored = m_section->OpenSubSection(SelectionSections::transformation))
            stored->ReadKey("TransformationType", type);
        return TransformationName(TransformationData::GetTransformationType(type.c_str()));
    }

    // There were series, and none is left.
    bool IsEmptied() const { return m_hadSeries && m_section->CountSubSections(SelectionSections::series) == 0; }

    void CheckAxis(char const *name) {
        auto const axis = m_section->OpenSubSection(name);
        if (!axis)
            return;
        Losses missing;
        Resolver resolver(*m_project, *axis);
        bool const isThere = resolver.Resolve(missing);
        if (!isThere)
            throw NCError(ExceptionMessage::translate("The axis cannot be shown. {1}") % missing.front(),
                          NCError::Error);
        std::ranges::move(missing, std::back_inserter(m_losses));
        ProjectVectorData data;
        if (data.ReadSection(m_project, axis.get(), false))
            TellComponents(*axis, resolver.Label(), data);
    }

    bool CanReadSeries(ConfigurationSection &section) {
        m_hadSeries = true;
        Resolver resolver(*m_project, section);
        if (!resolver.Resolve(m_losses))
            return false;
        try {
            ProjectVectorData data;
            if (SelectionSections::ReadSeries(m_selection, section, false, data)) {
                TellComponents(section, resolver.Label(), data);
                return true;
            }
            Tell(ExceptionMessage::translate("{1}: there is nothing to show.") % resolver.Label());
        } catch (NCError const &error) {
            Tell(resolver.Label(), error);
        }
        return false;
    }

    void TellComponents(ConfigurationSection const &section, std::string const &label, ProjectVectorData const &data) {
        int const kinds = data.GetProjectVector()->GetComponentType();
        struct Kind {
            ProjectVector::ComponentType kind;
            char const *key;
        };
        for (Kind const &kind : {Kind{ProjectVector::ComponentPredictive, "PredictiveComp"},
                                 Kind{ProjectVector::ComponentXSideOrthogonal, "XSideOrthoComp"},
                                 Kind{ProjectVector::ComponentYSideOrthogonal, "YSideOrthoComp"},
                                 Kind{ProjectVector::ComponentOSC, "OSCCOMP"}}) {
            int saved = 0;
            int const shown = data.GetComponent(kind.kind, false);
            if ((kinds & kind.kind) != 0 && section.ReadKey(kind.key, saved) && saved > shown)
                Tell(ExceptionMessage::translate("{1}: there is no component {2} any more; component {3} stands in.") %
                     label % saved % shown);
        }
    }

    // Without the vectors that it needs, the transformation goes and the plot stays.
    void CheckTransformation() {
        auto const section = m_section->OpenSubSection(SelectionSections::transformation);
        if (!section)
            return;
        std::string label = TransformationName();
        try {
            bool areThere = true;
            for (char const *const name : {crossSection, divideSection})
                if (auto const vector = section->OpenSubSection(name)) {
                    Resolver resolver(*m_project, *vector);
                    areThere = resolver.Resolve(m_losses) && areThere;
                }
            if (areThere && TransformationData().ReadSection(m_project, section.get(), false))
                return;
            Tell(ExceptionMessage::translate("The transformation \"{1}\" cannot be made any more.") % label);
        } catch (NCError const &error) {
            Tell(label, error);
        }
        m_transformationIsLost = true;
        section->WriteKey("TransformationType", "No Transformation");
    }

    // What the section of a selection does not hold, and the number of lags, which is lost when the items are found.
    void RestoreMore() {
        auto const more = m_root->OpenSubSection(moreSection);
        TransformationData settings = m_selection.GetTransformationData();
        if (int lags = 0; more && more->ReadKey("NumLags", lags) && m_selection.GetColumnIDs()) {
            settings.SetMaxLags(m_selection.GetColumnIDs()->Size());
            settings.SetNumLags(lags);
        }
        if (bool padding = true; more && more->ReadKey("UsePadding", padding)) {
            WaveletOptions wavelets = settings.GetWaveletOptions();
            wavelets.SetUsePadding(padding);
            settings.SetWaveletOptions(wavelets);
        }
        m_selection.SetTransformationData(settings);
        if (more)
            more->ReadKey("Significance", m_selection.GetExtraOptions().significance);
        if (int alias = -1; more && more->ReadKey("PreferredTitle", alias))
            m_selection.SetPreferredTitleID(alias);
    }

    void CheckBatch() {
        std::string batch;
        if (!m_section->ReadKey("Batch", batch) || batch.empty() || m_selection.NumSelectObjects() > 0)
            return;
        Tell(ExceptionMessage::translate("There is no batch \"{1}\" any more; all items are shown.") % batch);
        m_selection.SetSelectObjects(BoolVector(m_selection.GetSelectObjects().Size(), true));
    }

    std::unique_ptr<ConfigurationSection> m_root, m_section;
    SelectDataSeriesData &m_selection;
    boost::shared_ptr<NCProject> m_project;
    Losses &m_losses;
    bool m_hadSeries = false;
    bool m_transformationIsLost = false;
};

} // namespace

void SavedSelection::Write(SelectDataSeriesData const &selection, ConfigurationSection &section, bool activeModel) {
    section.Clear();
    auto const stored = section.CreateSubSection(SelectionSections::selection);
    selection.WriteSection(stored.get(), activeModel);
    TransformationData const &transformation = selection.GetTransformationData();
    if (boost::shared_ptr<NCProject> const project = selection.GetProject()) {
        auto const write = [&](ProjectVectorData const &data, ConfigurationSection &child) {
            WriteNames(data, *project, selection.GetDefaultSelection().get(), child);
        };
        int const mode = selection.GetMode();
        if (mode & SelectDataSeriesData::AxisX)
            write(selection.GetXAxis(), *stored->OpenSubSection(SelectionSections::xAxis));
        if (mode & SelectDataSeriesData::AxisY)
            write(selection.GetYAxis(), *stored->OpenSubSection(SelectionSections::yAxis));
        for (int position = 1; position <= selection.NumberOfSeries(); ++position)
            write(selection.GetSeries(position), *stored->OpenSubSection(SelectionSections::series, position));
        auto const settings = stored->OpenSubSection(SelectionSections::transformation);
        write(transformation.GetCrossVector(), *settings->OpenSubSection(crossSection));
        if (auto const divisor = settings->OpenSubSection(divideSection))
            write(transformation.GetDivideVector(), *divisor);
    }
    auto const more = section.CreateSubSection(moreSection);
    if (transformation.IsNumLagsInitialised())
        more->WriteKey("NumLags", transformation.GetNumLags());
    more->WriteKey("UsePadding", transformation.GetWaveletOptions().GetUsePadding());
    more->WriteKey("Significance", selection.GetExtraOptions().significance);
    more->WriteKey("PreferredTitle", selection.GetPreferredTitleID(true));
}

bool SavedSelection::Read(ConfigurationSection const &section, std::optional<int> model,
                          SelectDataSeriesData &selection, std::vector<std::string> &losses) {
    return Restoration(section, model, selection, losses).Read();
}
