#pragma once

#include <json/value.h>

#include <string>

#include "Report.h"
#include "SourceLine.h"

// SARIF 2.1.0, the format of code scanning services.
namespace tool {

// Returns a result of a log: a diagnostic with its position in the source of the report and in the file.
// Columns count characters, not bytes.
Json::Value SarifResult(const FileReport& report, const SourceText& source, const Diagnostic& diagnostic,
                        const Diagnostic& inFile);

// Returns a log with one run of the tool, and all rules.
Json::Value SarifLog(const Json::Value& results);

}  // namespace tool
