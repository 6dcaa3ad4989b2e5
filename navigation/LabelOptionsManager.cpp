#include "navigation/LabelOptionsManager.h"

#include "navigation/DataSeriesUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/storage/ConfigurationSection.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectLabelArgument.h"

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

constexpr char const *batchLevelSection = "BatchLevel_Labels";

struct LabelKeys {
    char const *label, *start, *length;
};

// Null for axes whose items are neither observations nor variables.
LabelKeys const *KeysOf(Vector::VectorTypeEnum axis) {
    static constexpr LabelKeys ofObservations{"ObservationLabel", "ObsStartPos", "ObsLength"};
    static constexpr LabelKeys ofVariables{"VariableLabel", "VarStartPos", "VarLength"};
    return axis == Vector::VectorTypeVariablesScores        ? &ofObservations
           : axis == Vector::VectorTypeObservationsLoadings ? &ofVariables
                                                            : nullptr;
}

NCProjectOptions::LabelSettings *GroupOf(Vector::VectorTypeEnum axis, NCProjectOptions &options) {
    return axis == Vector::VectorTypeVariablesScores        ? &options.observations
           : axis == Vector::VectorTypeObservationsLoadings ? &options.variables
                                                            : nullptr;
}

// Where the identifier of titles is kept; null for a selection whose numbers choose neither.
int *TitleOf(SelectDataSeriesData const &selection, NCProjectOptions &options) {
    ArgumentType const argument = GetVectorArgumentType(&selection);
    return argument == ObservationArgument ? &options.observations.title
           : argument == VariableArgument  ? &options.variables.title
                                           : nullptr;
}

} // namespace

SourceTypeEnum::SourceType SourceTypeEnum::GetSourceType(SelectDataSeriesData const *selection) {
    return !selection ? NoSelection : IsBatchLevelData(selection) ? BatchLevelData : OrdinaryData;
}

void LabelOptionsManager::SetLabelArgFromOptions(SelectLabelArgument &label) const {
    bool const isOfBatches = IsBatchLevelData(&m_selection);
    if (isOfBatches && ReadBatchLevelLabels(label))
        return;
    boost::shared_ptr<NCProject> const project = m_selection.GetProject();
    NCProjectOptions options;
    project->GetProjectOptions(&options);
    label.SetFromOptions(m_selection.GetVectorType(), &options);
    if (isOfBatches && m_selection.GetVectorType() == Vector::VectorTypeVariablesScores) {
        label.SetSelID(project->GetObservations().GetBatchID());
        label.SetFromOptions(false);
    }
}

bool LabelOptionsManager::ReadBatchLevelLabels(SelectLabelArgument &label) const {
    auto const section = m_selection.GetProject()->GetSettingsSection(batchLevelSection);
    Vector::VectorTypeEnum const axis = m_selection.GetVectorType();
    auto const read = [&section](char const *key, auto set) {
        int value = 0;
        bool const isThere = section && section->ReadKey(key, value);
        if (isThere)
            set(value);
        return isThere;
    };
    auto const readPiece = [&](LabelKeys const &keys) {
        read(keys.start, [&label](int start) { label.SetStartPos(start); });
        read(keys.length, [&label](int length) { label.SetLength(length); });
    };
    label.SetType(axis);
    bool isRead = true;
    if (LabelKeys const *const keys = KeysOf(axis)) {
        isRead = read(keys->label, [&label](int id) { label.SetSelID(id); });
        readPiece(*keys);
    } else if (axis == Vector::VectorTypeBatch) {
        label.SetSelID(1);
        readPiece(*KeysOf(Vector::VectorTypeVariablesScores));
    }
    label.SetFromOptions(true);
    return isRead;
}

bool LabelOptionsManager::ReadLabelArgSection(SelectLabelArgument &label, ConfigurationSection *section) const {
    bool const isRead = label.ReadSection(section);
    if (!isRead || label.FromOptions())
        SetLabelArgFromOptions(label);
    return isRead;
}

void LabelOptionsManager::GetLabelSetting(LabelSetting &setting) const {
    if (m_selection.GetTransformationData().IsTransformItems() || IsBatchLevelData(&m_selection))
        return;
    NCProjectOptions options;
    m_selection.GetProject()->GetProjectOptions(&options);
    NCProjectOptions::LabelSettings const *const group = GroupOf(m_selection.GetVectorType(), options);
    if (!group) {
        setting = {};
        return;
    }
    setting.LabelID = group->identifier;
    setting.StartPos = group->start;
    setting.Length = group->length;
    if (int const *const title = TitleOf(m_selection, options))
        setting.TitleLabel = *title;
}

void LabelOptionsManager::SaveAsDefaultOptions(LabelSetting const &setting) const {
    if (m_selection.GetTransformationData().IsTransformItems())
        return;
    if (IsBatchLevelData(&m_selection))
        return SaveBatchLevelLabels(setting);
    boost::shared_ptr<NCProject> const project = m_selection.GetProject();
    NCProjectOptions options;
    project->GetProjectOptions(&options);
    if (NCProjectOptions::LabelSettings *const group = GroupOf(m_selection.GetVectorType(), options)) {
        group->identifier = setting.LabelID;
        group->start = setting.StartPos;
        group->length = setting.Length;
    }
    if (int *const title = TitleOf(m_selection, options))
        *title = setting.TitleLabel;
    project->SetProjectOptions(&options);
}

void LabelOptionsManager::SaveBatchLevelLabels(LabelSetting const &setting) const {
    LabelKeys const *const keys = KeysOf(m_selection.GetVectorType());
    auto const section = m_selection.GetProject()->GetSettingsSection(batchLevelSection);
    if (!keys || !section)
        return;
    section->WriteKey(keys->label, setting.LabelID);
    section->WriteKey(keys->start, setting.StartPos);
    section->WriteKey(keys->length, setting.Length);
    ArgumentType const argument = GetVectorArgumentType(&m_selection);
    if (argument != NoArgument)
        section->WriteKey(argument == ObservationArgument ? "ObservationTitleLabel" : "VariableTitleLabel",
                          setting.TitleLabel);
}

} // namespace DataSeriesUtilities
