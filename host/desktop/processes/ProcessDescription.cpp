#include "host/desktop/processes/ProcessDescription.h"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>
#include <string>

#include "host/BootTime.h"
#include "host/desktop/windowing/PlainText.h"

namespace vel {
namespace {

constexpr qsizetype kLongestCommandLine = 200;

QString shortened(QString text) {
  if (text.size() > kLongestCommandLine) {
    const bool isPair = text[kLongestCommandLine - 1].isHighSurrogate();
    text.truncate(kLongestCommandLine - (isPair ? 1 : 0));
    text.append(u'…');
  }
  return text;
}

/// By the clock as it is set now, which need not be how it was set when the program was started.
QDateTime startOf(const ProcessRecord& process, const BootTime& boot) {
  const auto sinceBoot = std::chrono::duration_cast<std::chrono::seconds>(bootTime()).count();
  const qint64 booted = QDateTime::currentSecsSinceEpoch() - sinceBoot;
  return QDateTime::fromSecsSinceEpoch(booted + process.startSeconds - boot.seconds);
}

}  // namespace

QString ProcessDescription::of(std::int64_t pid) {
  if (pid < 1 || pid > std::numeric_limits<std::int32_t>::max()) {
    return {};
  }
  const auto number = static_cast<std::int32_t>(pid);
  const std::optional<ProcessRecord> record = kernel_.process(number);
  const std::optional<std::string> user = details_.user(number);
  if (!record || !user) {
    return {};
  }
  QStringList lines{texts_("Process: %1").arg(pid)};
  if (const std::int32_t processes = processesInRow(pid); processes > 1) {
    lines.append(texts_("Processes in all: %1").arg(processes));
  }
  lines.append(texts_("User: %1").arg(plainText(*user)));
  lines.append(
      texts_("Running since: %1")
          .arg(QLocale().toString(startOf(*record, kernel_.bootTime().value_or(BootTime{})),
                                  QLocale::ShortFormat)));
  const QString commandLine = shortened(plainText(details_.commandLine(number)));
  if (!commandLine.isEmpty()) {
    lines.append(texts_("Command: %1").arg(commandLine));
  }
  return lines.join(u'\n');
}

std::int32_t ProcessDescription::processesInRow(std::int64_t pid) const {
  const auto& rows = record_.topMemProcess();
  if (!rows) {
    return 0;
  }
  const auto row =
      std::find_if(rows->begin(), rows->end(),
                   [text = std::to_string(pid)](const auto& each) { return each.pid == text; });
  return row != rows->end() ? row->processes : 0;
}

}  // namespace vel
