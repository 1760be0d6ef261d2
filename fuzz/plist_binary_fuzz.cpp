#include "PlistWalk.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    velmora::fuzz::parseAndWalk(data, size, &velmora::PropertyList::fromBinary,
                                &velmora::plist::forEachBinaryArrayElement);
    return 0;
}
