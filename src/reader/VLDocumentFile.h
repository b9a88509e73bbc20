#pragma once

#include <string>
#include <sys/stat.h>

// The files of a document come from anywhere, and a name may stand for a FIFO, which would block
// the reader forever, or a device, which never ends. A document file is opened without blocking
// and accepted only when it is a regular file; otherwise -1, with errno set (ENODEV for a file
// that is not regular, EISDIR for a folder). `status` receives the opened file's status.
int openDocumentFile(const std::string& path, struct stat& status);
// The same for a name inside an open folder (a package's glyph folder): the kernel then looks up
// one name instead of the whole path, for each of thousands of files.
int openDocumentFileAt(int folder, const char* name, struct stat& status);

// Whether `path`, with every link resolved, lies inside `folder`: a package's files must not
// lead the reader to files elsewhere.
bool isInsideFolder(const std::string& path, const std::string& folder);
