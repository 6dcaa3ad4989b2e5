#pragma once

#include "app/Listing.h"
#include "app/TableDates.h"
#include "platform/identity/ProjectData.h"

// Writes a table with one line for each item and one column for each series. csv and json have nine significant digits;
// a missing value is an empty field, and null in json. Dates are in ISO 8601, texts in json.
void WriteTable(ProjectData const &table, TableDates const &dates, Format format, Output &output);
