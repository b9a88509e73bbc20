#include "platform/Log.h"

#include <cstdio>
#include <mutex>

void VLLog(const std::string& line)
{
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fputc('\n', stderr);
}
