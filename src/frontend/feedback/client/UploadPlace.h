#pragma once

#include <QString>
#include <memory>

class QTemporaryDir;

/// Where copies of logs and archives lie until they are sent: a directory of this user. For any thread.
namespace UploadPlace {

/// A template for QTemporaryDir. Makes the directory that it lies in.
QString newLogs();
QString newPictures();
/// The directory that such a template names; may not be valid. It is removed with the last reference, in
/// another thread where that one is the GUI's.
std::shared_ptr<QTemporaryDir> make(const QString& nameTemplate);
/// The file does not exist yet, its directory does.
QString newArchive();

/// A directory for suggestions when the common one cannot be used; it may not exist.
QString suggestions();

constexpr int LeftOverSecs = 60 * 60;  ///< what is newer may be another process's
/// Removes what an earlier process, which was ended in the middle, has left: what is older than that.
void removeLeftOvers();

}  // namespace UploadPlace
