#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Progress.h"
#include "platform/identity/ProjectData.h"

#include <iostream>

int main() {
    ColumnIDs const columns(NCStringVector{"length", "width"}, "Variable", {}, ColumnIDs::Strings, 0);
    ProjectData table(RowIDs("mean", {}), columns, NCDataMatrix<float>(1, 2, 1.5f));
    table.AppendNumRow({1, 2}, "%g");
    ProjectVector const *const vector = ProjectVectorHandler::Instance()->FindVector(
        "p", ProjectVector::VectorTypeNone, ProjectVector::DataTypeNone, nullptr);
    if (!vector)
        return 1;
    std::cout << table.GetColumnName(2) << ' ' << table.GetMatrix()(1, 2) << ' ' << table.GetRowName(2) << '\n'
              << vector->GetHelpString() << '\n';
}
