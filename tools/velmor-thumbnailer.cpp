// The platform entry on Linux: a thumbnailer command in the freedesktop manner.
//   velmor-thumbnailer [-s SIZE] [--full-context] INPUT OUTPUT

#include "thumbnail/ThumbnailCommand.h"

int main(int argc, char** argv)
{
    return runThumbnailCommand(argc, argv);
}
