// The options of tradewick-print for those who draw templates.
#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <optional>

namespace tradewick
{

// --template, --rows, --expand, --into, --lint, --gallery and --before.
QList<QCommandLineOption> templateOptions();

// Does what they ask for, with --pdf and --png as for documents, and gives the exit status; nothing when none of them
// is set. Errors go to stderr, findings to stdout.
std::optional<int> runTemplateTools(const QCommandLineParser &options);

} // namespace tradewick
