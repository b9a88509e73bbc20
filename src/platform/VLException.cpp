#include "platform/VLException.h"

#include "platform/StringFormat.h"

void VLException::raiseNotImplemented(int line, const char* method)
{
    throw VLException("VLNotImplemented", stringWithFormat("%i %s", line, method));
}
