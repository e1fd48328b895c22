#include "desktop/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "desktop/text.h"

namespace kaunter {

SingleInstance::SingleInstance(const std::string& app_path) {
  const QString folder =
      QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/kaunter";
  QDir().mkpath(folder);
  const QString real = QFileInfo(Q(app_path)).canonicalFilePath();
  const QByteArray name = QCryptographicHash::hash((real.isEmpty() ? Q(app_path) : real).toUtf8(),
                                                   QCryptographicHash::Sha1)
                              .toHex()
                              .left(16);
  lock_ = std::make_unique<QLockFile>(folder + "/running-" + QString::fromLatin1(name) + ".lock");
  // A lock is stale only when its process is gone, however long the program stays open.
  lock_->setStaleLockTime(0);
  if (lock_->tryLock(0)) return;
  // Where no lock can be made (a full or read-only disk), the program still starts.
  other_runs_ = lock_->error() == QLockFile::LockFailedError;
}

}  // namespace kaunter
