#include "phone/host/filter_file.h"

#import <Foundation/Foundation.h>

namespace noctara {

FilterAnswer askFilter(const std::filesystem::path& filter, const std::string& bundle) {
    @autoreleasepool {
        NSDictionary* file = [NSDictionary
            dictionaryWithContentsOfFile:[NSString stringWithUTF8String:filter.c_str()]];
        if (!file)
            return FilterAnswer::unreadable;
        NSArray* bundles = [[file objectForKey:@"Filter"] objectForKey:@"Bundles"];
        const bool matches =
            !bundles || [bundles containsObject:[NSString stringWithUTF8String:bundle.c_str()]];
        return matches ? FilterAnswer::matches : FilterAnswer::matchesNot;
    }
}

} // namespace noctara
