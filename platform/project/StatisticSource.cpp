#include "platform/project/StatisticSource.h"

#include "platform/identity/ColumnTerm.h"
#include "platform/identity/VarObs.h"
#include "platform/project/GetProjectData.h"

#include <sstream>

namespace {

constexpr OperationInfo operations[] = {
#define TABLE(name, parameters, arguments) {Operation::name, OperationKind::Table, #name},
#define TABLE_OVERLOAD(key, name, parameters, arguments) {Operation::key, OperationKind::Table, #name},
#define COLUMNS(name, parameters, arguments) {Operation::name, OperationKind::Columns, #name},
#define MATRIX(name, parameters, arguments) {Operation::name, OperationKind::Matrix, #name},
#include "platform/project/operations.def"
};

// Writes an argument of any kind as text.
class ArgumentWriter {
public:
    explicit ArgumentWriter(std::ostream &stream) : m_stream(stream) {}

    void operator()(bool value) const { m_stream << (value ? "true" : "false"); }
    void operator()(double value) const { m_stream << value; }
    void operator()(auto value) const requires(!std::is_pointer_v<decltype(value)>) {
        m_stream << static_cast<int>(value);
    }
    void operator()(auto const *value) const {
        if (value)
            Write(*value);
        else
            m_stream << "null";
    }

private:
    void Write(ColumnTerm const &term) const { m_stream << '{' << term << '}'; }
    void Write(VarObsInfo const &item) const { m_stream << item.GetUniqueID(); }
    void Write(std::pair<std::string, float> const &point) const { m_stream << point.first << '@' << point.second; }
    void Write(boost::shared_ptr<OSCModel const> const &model) const { m_stream << (model ? "model" : "null"); }
    void Write(int value) const { m_stream << value; }
    void Write(auto const &list) const requires requires { list.begin(); }
    {
        char const *separator = "[";
        for (auto const &item : list) {
            m_stream << separator;
            Write(item);
            separator = ", ";
        }
        m_stream << (list.begin() == list.end() ? "[]" : "]");
    }

    std::ostream &m_stream;
};

} // namespace

std::span<OperationInfo const> AllOperations() {
    return operations;
}

std::string Call::Text() const {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << operations[static_cast<std::size_t>(operation)].name;
    char const *separator = "(";
    for (Argument const &argument : arguments) {
        stream << separator;
        std::visit(ArgumentWriter(stream), argument);
        separator = ", ";
    }
    stream << (arguments.empty() ? "()" : ")");
    return stream.str();
}
