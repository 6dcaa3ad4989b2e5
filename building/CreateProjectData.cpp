#include "building/CreateProjectData.h"

#include "catalogue/ProjectVectorHandler.h"
#include "platform/containers/Missing.h"
#include "platform/identity/TableJoin_internal.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

#include <cstdlib>
#include <optional>

namespace ProjectDataUtilities {

namespace {

struct VectorText {
    std::string name;
    std::string arguments; // from the source on
    std::string source;
};

std::optional<VectorText> Split(char const *text) {
    std::string const whole(text);
    std::size_t const blank = whole.find(' ');
    if (blank == std::string::npos)
        return {};
    std::string arguments = whole.substr(blank + 1);
    std::string source = arguments.substr(0, arguments.find(','));
    return VectorText{whole.substr(0, blank), std::move(arguments), std::move(source)};
}

bool IsPlaceholder(std::string const &text) {
    return CreateProjectData::IsNum(text) || CreateProjectData::IsMissing(text);
}

TablePtr OneRow(char const *name, ColumnIDs columns, NCDataMatrix<float> matrix) {
    RowIDs rows(NCStringVector{name}, columns.GetProject());
    return std::make_unique<ProjectData>(std::move(rows), std::move(columns), std::move(matrix));
}

} // namespace

bool CreateProjectData::IsNum(std::string const &text) {
    return text.starts_with("Num ");
}
bool CreateProjectData::IsMissing(std::string const &text) {
    return text.starts_with("Missing ");
}

ProjectVector const *CreateProjectData::GetProjectVector(std::string const &source, std::string const &name,
                                                         ProjectVector::VectorTypeEnum type) const {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    ProjectPtr const project = m_project->shared_from_this();
    int const model = ProjectVector::GetModelNumber(project, source);
    ProjectVectorHandler::Iterator found;
    if (model != -1) {
        boost::shared_ptr<ModelInfo const> const info = m_project->GetModelInfo(model);
        found = handler.Find(name.c_str(), type, ProjectVector::DataTypeModel, info.get());
    } else {
        int const dataSet = ProjectVector::GetDataSetNumber(project, source.c_str());
        ProjectVector::DataTypeEnum const data = dataSet == 0  ? ProjectVector::DataTypeNone
                                                 : dataSet > 0 ? ProjectVector::DataTypeDataSet
                                                               : ProjectVector::DataTypePredictionSet;
        found = handler.Find(name.c_str(), type, data, nullptr);
    }
    if (found == handler.end())
        throw NCError(ExceptionMessage::translate("Project vector not found in CreateProjectData::GetProjectVector."),
                      NCError::Error);
    return *found;
}

TablePtr CreateProjectData::GetProjectData(char const *text, ProjectVector::VectorTypeEnum type) const {
    std::optional<VectorText> const vector = Split(text);
    if (!vector)
        return nullptr;
    return GetProjectVector(vector->source, vector->name, type)
        ->CreateVectorRaw(m_project->shared_from_this(), vector->arguments.c_str());
}

TablePtr CreateProjectData::GetProjectData(std::string const &text, ProjectVector::VectorTypeEnum type) const {
    return GetProjectData(text.c_str(), type);
}

TablePtr CreateProjectData::GetProjectData(std::list<std::string> const &texts,
                                           ProjectVector::VectorTypeEnum type) const {
    TableJoin join(static_cast<int>(texts.size()));
    for (std::string const &text : texts) {
        TablePtr table = IsNum(text)       ? CreateNumProjectData(texts, type)
                         : IsMissing(text) ? CreateMissingProjectData(texts, type)
                                           : GetProjectData(text, type);
        // What has nothing in common with the others is left out.
        if (table)
            join.Add(std::move(table));
    }
    return join.Take();
}

ColumnIDs CreateProjectData::GetColumnIDs(char const *text, ProjectVector::VectorTypeEnum type) const {
    std::optional<VectorText> const vector = Split(text);
    if (!vector)
        throw NCInternalError("CreateProjectData::GetColumnIDs");
    return GetProjectVector(vector->source, vector->name, type)
        ->CreateColumnIDsRaw(m_project->shared_from_this(), vector->arguments.c_str());
}

ColumnIDs CreateProjectData::GetColumnIDs(std::string const &text, ProjectVector::VectorTypeEnum type) const {
    return GetColumnIDs(text.c_str(), type);
}

std::unique_ptr<ColumnIDs> CreateProjectData::GetColumnIDs(std::list<std::string> const &texts,
                                                           ProjectVector::VectorTypeEnum type) const try {
    std::unique_ptr<ColumnIDs> common;
    for (std::string const &text : texts) {
        if (IsPlaceholder(text))
            continue;
        if (!common) {
            if (text.empty())
                return nullptr;
            common = std::make_unique<ColumnIDs>(GetColumnIDs(text, type));
            continue;
        }
        ColumnIDs const columns = GetColumnIDs(text, type);
        ColumnIDs::Positions here;
        ColumnIDs::Positions there;
        switch (common->InterSection(columns, here, there, 1)) {
        case 0:
            return nullptr;
        case 2:
            common->MergeBatches(columns);
            break;
        default:
            common->Reduce(here);
        }
    }
    return common;
} catch (NCError const &) {
    return nullptr;
}

TablePtr CreateProjectData::CreateNumProjectData(std::list<std::string> const &texts,
                                                 ProjectVector::VectorTypeEnum type) const {
    std::unique_ptr<ColumnIDs> const columns = GetColumnIDs(texts, type);
    if (!columns)
        return nullptr;
    NCDataMatrix<float> matrix(1, columns->Size(), missingValue);
    bool const lags = columns->GetSource() == ColumnIDs::Integers;
    int column = 0;
    for (float &value : matrix.MutableRow(1)) {
        ++column;
        value = lags ? columns->GetFloatValue(column) : static_cast<float>(column);
    }
    return OneRow(lags ? "Lag" : "Num", *columns, std::move(matrix));
}

TablePtr CreateProjectData::CreateMissingProjectData(std::list<std::string> const &texts,
                                                     ProjectVector::VectorTypeEnum type) const {
    std::unique_ptr<ColumnIDs> const columns = GetColumnIDs(texts, type);
    if (!columns)
        return nullptr;
    return OneRow("Missing", *columns, NCDataMatrix<float>(1, columns->Size(), missingValue));
}

bool CreateProjectData::Parse(char const *text, std::string &source, std::string &name, int &first,
                              unsigned long &second) const {
    std::string const whole(text);
    std::size_t const blank = whole.find(' ');
    name = whole.substr(0, blank);
    if (blank == std::string::npos)
        return true;
    std::size_t comma = whole.find(',', blank);
    source = whole.substr(blank + 1, comma == std::string::npos ? comma : comma - blank - 1);
    if (comma == std::string::npos)
        return false;
    first = static_cast<int>(std::strtol(whole.c_str() + comma + 1, nullptr, 10));
    // Without a further comma the second number is read from the front of the text.
    comma = whole.find(',', comma + 1);
    std::size_t const start = comma == std::string::npos ? 0 : comma + 1;
    second = static_cast<unsigned long>(std::strtol(whole.c_str() + start, nullptr, 10));
    return true;
}

} // namespace ProjectDataUtilities
