#pragma once
// Whole-file reading and crash-safe replacing of files.
#include "basekit2/path.h"

#include <string>
#include <string_view>
#include <vector>

namespace basekit2 {

// Reads the whole file into content. On failure returns false and says why
// in error ("cannot open: No such file or directory").
bool read_file(const path_t& file, std::string& content, std::wstring& error);

// Replaces file with content so that a reader sees either the old or the new
// file, never a mix: the bytes go to a temporary file in the same folder,
// which is flushed to disk and then renamed over the target. An existing
// file keeps its permissions. On failure the target is untouched, the
// temporary file is removed, the step that failed is returned and error
// says why.
enum class write_error { none, create_temporary, write, flush, rename };
write_error write_file_atomically(const path_t& file, std::string_view content, std::wstring& error);
// The same for content given in pieces, written one after the other; the
// pieces are not joined in memory first.
write_error write_file_atomically(const path_t& file, const std::vector<std::string_view>& pieces,
                                  std::wstring& error);

} // namespace basekit2
