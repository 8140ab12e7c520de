/// Where the compiler's Objective-C headers expect the blocks runtime.
#include <Block.h>
