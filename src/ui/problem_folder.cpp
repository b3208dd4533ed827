// A folder counts as writable only when a file can really be made in it:
// permission bits say nothing about read-only mounts.

#include "ui/problem_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace velkaro::ui {
namespace {

const QString kProblemFolderName = QStringLiteral("KVZ");

bool canWriteInto(const QString& folder) {
  if (!QDir().mkpath(folder)) return false;
  QTemporaryFile probe(folder + QStringLiteral("/.velkaro-XXXXXX"));
  return probe.open();
}

}  // namespace

QString chooseProblemFolder() {
  const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + kProblemFolderName;
  if (canWriteInto(beside)) return beside;
  const QString own =
      QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QLatin1Char('/') + kProblemFolderName;
  QDir().mkpath(own);
  return own;
}

}  // namespace velkaro::ui
