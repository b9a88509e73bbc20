#pragma once

#include <fcntl.h>
#include <string>
#include <sys/stat.h>

// The files of a document come from anywhere, and a name may stand for a FIFO, which would block
// the reader forever, or a device, which never ends. A document file is opened without blocking
// and accepted only when it is a regular file; otherwise -1, with errno set (ENODEV for a file
// that is not regular, EISDIR for a folder). `status` receives the opened file's status. A relative
// path is taken from the open folder `folder`: the many files of a package's glyph folder are
// opened without the kernel walking the folder's path again for each.
int openDocumentFile(const std::string& path, struct stat& status, int folder = AT_FDCWD);

// Whether `path`, with every link resolved, lies inside `folder`: a package's files must not
// lead the reader to files elsewhere.
bool isInsideFolder(const std::string& path, const std::string& folder);
