#include "tests/support/RecordingProject.h"

#include "platform/Exception.h"

namespace {

char const *NameOf(Call const &call) {
    return AllOperations()[static_cast<std::size_t>(call.operation)].name;
}

} // namespace

struct RecordingProject::Model final : public NCModel {
    ModelInfo info;
    ColumnTerms x;
    ColumnTerms y;

    int GetModelNumber() const override { return info.number; }
    ColumnTerms const &GetXColumnTerms() const override { return x; }
    ColumnTerms const &GetYColumnTerms() const override { return y; }
    ObservationInfos const &GetObservations() const override { return EmptyObservationInfoVector(); }
};

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

ModelInfo &RecordingProject::Info(int model) {
    return m_models.at(static_cast<std::size_t>(model - 1))->info;
}

boost::shared_ptr<NCDataSetInfo const> RecordingProject::GetDataSetInfo(int dataSet) const {
    auto const found = dataSets.find(dataSet);
    return found == dataSets.end() ? nullptr : boost::make_shared<NCDataSetInfo const>(found->second);
}

int RecordingProject::AddModel(ModelTypeE::Model type, int predictive, int xSide, int ySide, int xTerms, int yTerms) {
    auto const model = boost::make_shared<Model>();
    model->info.number = GetNumberOfModels() + 1;
    model->info.type = type;
    model->info.predictiveComponents = predictive;
    model->info.xSideOrthogonalComponents = xSide;
    model->info.ySideOrthogonalComponents = ySide;
    model->info.fitted = true;
    for (int k = 1; k <= xTerms + yTerms; ++k)
        (k <= xTerms ? model->x : model->y).AppendTerm(ColumnTerm(static_cast<std::uint32_t>(k)));
    m_models.push_back(model);
    return model->info.number;
}

boost::shared_ptr<ModelInfo const> RecordingProject::GetModelInfo(int model) const {
    if (model < 1 || model > GetNumberOfModels())
        return {};
    auto const &known = m_models[static_cast<std::size_t>(model - 1)];
    return {known, &known->info};
}

boost::shared_ptr<NCModel const> RecordingProject::GetModel(int model) const {
    if (model < 1 || model > GetNumberOfModels())
        return {};
    return m_models[static_cast<std::size_t>(model - 1)];
}
