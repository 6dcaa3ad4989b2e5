#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <cstdint>

class SelectDataSeriesData;
class SelectLabelArgument;

namespace DataSeriesUtilities {

// What a selection is of.
struct DATASERIES_API SourceTypeEnum {
    enum SourceType : int { NoSelection = 0, OrdinaryData = 1, BatchLevelData = 2 };

    static SourceType GetSourceType(SelectDataSeriesData const *selection);
};

// How the items of a selection are labelled, as defaults for others. Columns of identifiers are 1-based.
struct LabelSetting {
    std::int32_t LabelID = 1;
    std::int32_t StartPos = 1;
    std::int32_t Length = 10;
    std::int32_t TitleLabel = 1;

    bool operator==(LabelSetting const &) const = default;
};

// Where the labels of a selection come from: the options of the project or, for data of whole batches, whose items have
// identifiers of their own, the section "BatchLevel_Labels" of its settings. Settings are neither read nor saved by
// GetLabelSetting and SaveAsDefaultOptions where a transformation has put others in the place of the items.
class DATASERIES_API LabelOptionsManager {
public:
    // The selection has a project, and must live longer.
    explicit LabelOptionsManager(SelectDataSeriesData const &selection) : m_selection(selection) {}

    // Labels of whole batches that nobody chose show the name of the batch.
    void SetLabelArgFromOptions(SelectLabelArgument &label) const;
    // Labels as they were saved or, where these follow the options or lack a key, as the options are. False for the
    // latter.
    bool ReadLabelArgSection(SelectLabelArgument &label, ConfigurationSection *section) const;
    // Leaves the setting as it is for data of whole batches.
    void GetLabelSetting(LabelSetting &setting) const;
    // Makes the setting the default for the axis of the selection; its title for the kind of items that the numbers of
    // the selection choose among.
    void SaveAsDefaultOptions(LabelSetting const &setting) const;

private:
    bool ReadBatchLevelLabels(SelectLabelArgument &label) const;
    void SaveBatchLevelLabels(LabelSetting const &setting) const;

    SelectDataSeriesData const &m_selection;
};

} // namespace DataSeriesUtilities
