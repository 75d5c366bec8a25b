#pragma once

#include <string>
#include <string_view>

namespace velmoria {

/// A text file to which several threads and processes add records, each in one piece. It is opened for every record:
/// one that was moved away, a folder that came later and a disk that has room again need no restart.
class RecordFile {
 public:
  /// "" is the path of no file.
  explicit RecordFile(std::string path);

  /// Adds a record, which brings its own line break; a missing file is made, and a missing folder for the user alone.
  /// What cannot be written is lost without a word, but for a folder that cannot be made: see MakeFolder. Only regular
  /// files and character devices are written: a pipe could hold the writer up, or end it.
  void Append(std::string_view record);

 private:
  std::string path_;
  bool isTorn_ = false;  // the last record was cut off
};

}  // namespace velmoria
