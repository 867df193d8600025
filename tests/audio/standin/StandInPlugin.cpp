// Stand-in for a BASS add-on (bassfoo.dll): offers two formats whose patterns overlap the built-in ones
// in another letter case, and each other.
#include "StandIn.h"

STANDIN_PLUGIN({0x20001, "Foo", "*.foo;*.FLAC;"}, {0x20002, "Bar", "*.Foo;;*.bar;*.MP3"})
