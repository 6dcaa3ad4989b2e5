#include "tests/support/RecordingProject.h"

#include "platform/text/Exception.h"

namespace {

char const *NameOf(Call const &call) {
    return AllOperations()[static_cast<std::size_t>(call.operation)].name;
}

// A model that answers from its record.
template <typename Base>
class ModelOf : public Base {
public:
    explicit ModelOf(RecordedModel const &content) : m_content(content) {}

    int GetModelNumber() const override { return m_content.info.number; }
    ColumnTerms const &GetXColumnTerms() const override { return m_content.x; }
    ColumnTerms const &GetYColumnTerms() const override { return m_content.y; }
    ObservationInfos const &GetObservations() const override { return m_content.rows; }
    int GetCoefficientKind() const override { return m_content.coefficientKind; }
    float GetDModXCrit(int, float, TriState::State) const override { return -99.0f; }
    bool IsDModNormalized() const override { return m_content.isNormalized; }
    bool IsDModXWeighted() const override { return m_content.isWeighted; }
    double GetCVStdDevDF(int) const override { return 0; }

protected:
    RecordedModel const &m_content;
};

class BatchModel final : public ModelOf<NCBatchModel> {
public:
    using ModelOf<NCBatchModel>::ModelOf;

    std::vector<int> GetBatchIndexes() const override { return std::vector<int>(m_content.batches.size(), 1); }
    std::string GetBatchName(int index) const override {
        return m_content.batches.at(static_cast<std::size_t>(index - 1));
    }
    int GetYVarTreatment() const override { return m_content.treatment; }
    NCDataVector<float> GetMaturity() const override { return m_content.maturity; }
    NCDataVector<float> GetTimeMaturityVector() const override { return {}; }
    NCDataMatrix<float> GetAlignedScores(int) const override { return m_content.alignedScores; }
    NCDataMatrix<float> GetAlignedDModX(int) const override { return m_content.alignedDModX; }
};

class Predictions final : public NCPredictions {
public:
    Predictions(boost::shared_ptr<NCModel const> model, boost::shared_ptr<RecordedData> rows,
                NCDataVector<float> maturity)
        : m_model(std::move(model)), m_rows(std::move(rows)), m_maturity(std::move(maturity)) {}

    boost::shared_ptr<NCModel const> GetModel() const override { return m_model; }
    ObservationInfos const &GetObservations() const override { return m_rows->GetObservations(); }
    BatchRuns const &GetBatchRuns() const override { return m_rows->GetBatchRuns(); }
    NCDataVector<float> GetMaturity() const override { return m_maturity; }

private:
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<RecordedData> m_rows;
    NCDataVector<float> m_maturity;
};

template <typename Map>
auto Found(Map const &map, int key) {
    auto const found = map.find(key);
    return found == map.end() ? typename Map::mapped_type() : found->second;
}

ObservationInfos InfosOf(std::vector<std::uint32_t> const &rows) {
    return ObservationInfos(rows.begin(), rows.end());
}

} // namespace

std::string RecordingSource::Take() const {
    std::string const last = calls.empty() ? std::string() : calls.back();
    calls.clear();
    return last;
}

TablePtr RecordingSource::Table(Call const &call) const {
    calls.push_back(call.Text());
    if (auto const canned = tableOf.find(NameOf(call)); canned != tableOf.end())
        return canned->second(call);
    NCDataMatrix<float> matrix(1, columns, 0.5f);
    return std::make_unique<ProjectData>(RowIDs(calls.back(), call.project.shared_from_this()), Columns(call),
                                         std::move(matrix));
}

ColumnIDs RecordingSource::Columns(Call const &call) const {
    if (AllOperations()[static_cast<std::size_t>(call.operation)].kind == OperationKind::Columns)
        calls.push_back(call.Text());
    if (auto const canned = columnsOf.find(NameOf(call)); canned != columnsOf.end())
        return canned->second(call);
    ColumnIDs::Numbers numbers;
    for (int i = 1; i <= columns; ++i)
        numbers.push_back(static_cast<std::uint32_t>(i));
    return ColumnIDs(ColumnIDs::Observations, numbers, call.project.shared_from_this(), 1);
}

NCDataMatrix<float> RecordingSource::Matrix(Call const &call) const {
    calls.push_back(call.Text());
    auto const canned = matrixOf.find(NameOf(call));
    return canned == matrixOf.end() ? NCDataMatrix<float>() : canned->second;
}

void FailingSource::Count() const {
    if (--m_left == 0)
        throw NCError(ExceptionMessage::translate("The source failed."), NCError::Error);
}

TablePtr FailingSource::Table(Call const &call) const {
    Count();
    return m_source.Table(call);
}

ColumnIDs FailingSource::Columns(Call const &call) const {
    Count();
    return m_source.Columns(call);
}

boost::shared_ptr<RecordingProject::Entry> RecordingProject::Find(int model) const {
    bool const known = model >= 1 && model <= GetNumberOfModels();
    return known ? m_models[static_cast<std::size_t>(model - 1)] : nullptr;
}

RecordedModel &RecordingProject::Model(int model) {
    return m_models.at(static_cast<std::size_t>(model - 1))->content;
}

int RecordingProject::AddModel(ModelTypeE::Model type, int predictive, int xSide, int ySide, int xTerms, int yTerms) {
    auto const entry = boost::make_shared<Entry>();
    ModelInfo &info = entry->content.info;
    info.number = GetNumberOfModels() + 1;
    info.name = "model" + std::to_string(info.number);
    info.type = type;
    info.predictiveComponents = predictive;
    info.xSideOrthogonalComponents = xSide;
    info.ySideOrthogonalComponents = ySide;
    info.sizeXVariables = xTerms;
    info.sizeYVariables = yTerms;
    info.fitted = true;
    for (int k = 1; k <= xTerms + yTerms; ++k)
        (k <= xTerms ? entry->content.x : entry->content.y).AppendTerm(ColumnTerm(static_cast<std::uint32_t>(k)));
    entry->object = boost::make_shared<ModelOf<ProjectionModel>>(entry->content);
    m_models.push_back(entry);
    return info.number;
}

int RecordingProject::AddBatchModel(int predictive, std::vector<std::string> batches) {
    int const model = AddModel(ModelTypeE::PLS, predictive, 0, 0, 3, 1);
    Entry &entry = *m_models.back();
    entry.content.info.isBatchModel = true;
    entry.content.batches = std::move(batches);
    entry.object = boost::make_shared<BatchModel>(entry.content);
    return model;
}

boost::shared_ptr<RecordedData> RecordingProject::MakeData(std::vector<std::uint32_t> const &rows,
                                                           std::vector<std::uint32_t> columns) const {
    auto const data = boost::make_shared<RecordedData>(*this);
    data->observations = InfosOf(rows);
    data->variables = std::move(columns);
    data->observationAliases = data->variableAliases = {1};
    return data;
}

RecordedData &RecordingProject::AddData(int dataSet, std::vector<std::uint32_t> const &rows,
                                        std::vector<std::uint32_t> columns) {
    m_data[dataSet] = MakeData(rows, std::move(columns));
    m_data[dataSet]->number = dataSet;
    return *m_data[dataSet];
}

RecordedData &RecordingProject::AddWorkset(int model, std::vector<std::uint32_t> const &rows,
                                           std::vector<std::uint32_t> columns) {
    Model(model).rows = InfosOf(rows);
    return *(m_worksets[model] = MakeData(rows, std::move(columns)));
}

void RecordingProject::AddPredictions(int model, std::vector<std::uint32_t> const &rows, NCDataVector<float> maturity) {
    m_predictions[model] = boost::make_shared<Predictions>(GetModel(model), MakeData(rows, {}), std::move(maturity));
}

boost::shared_ptr<ModelInfo const> RecordingProject::GetModelInfo(int model) const {
    auto const entry = Find(model);
    return entry ? boost::shared_ptr<ModelInfo const>(entry, &entry->content.info) : nullptr;
}

boost::shared_ptr<NCModel const> RecordingProject::GetModel(int model) const {
    auto const entry = Find(model);
    return entry ? entry->object : nullptr;
}

boost::shared_ptr<NCDataContainerBase const> RecordingProject::GetWorkset(int model) const {
    return Found(m_worksets, model);
}

boost::shared_ptr<NCDataSet const> RecordingProject::GetDataSet(int dataSet) const {
    return Found(m_data, dataSet);
}

boost::shared_ptr<NCDataSetInfo const> RecordingProject::GetDataSetInfo(int dataSet) const {
    auto const found = dataSets.find(dataSet);
    return found == dataSets.end() ? nullptr : boost::make_shared<NCDataSetInfo const>(found->second);
}

int RecordingProject::GetFirstDataSet(int after) const {
    auto const next = m_data.upper_bound(after);
    return next == m_data.end() ? 0 : next->first;
}

boost::shared_ptr<NCPredictions const> RecordingProject::GetPredictions(int model, bool) const {
    onPredictions(model);
    return Found(m_predictions, model);
}

std::unique_ptr<ConfigurationSection> RecordingProject::GetSettingsSection(std::string const &name) {
    return m_settings.CreateSubSection(name);
}
