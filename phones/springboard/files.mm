#include "platform/files.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardFiles final : public Files {
public:
    bool exists(const std::string& path) override {
        @autoreleasepool {
            return [[NSFileManager defaultManager] fileExistsAtPath:stringOf(path)];
        }
    }

    std::optional<Dictionary> readDictionary(const std::string& path) override {
        @autoreleasepool {
            NSDictionary* dictionary =
                [[[NSDictionary alloc] initWithContentsOfFile:stringOf(path)] autorelease];
            return dictionary ? std::optional(dictionaryOf(dictionary)) : std::nullopt;
        }
    }

    bool writeDictionary(const std::string& path, const Dictionary& dictionary) override {
        @autoreleasepool {
            return [objectOf(dictionary) writeToFile:stringOf(path) atomically:YES];
        }
    }

    std::shared_ptr<const PropertyList> parse(const std::string& path,
                                              std::string& error) override {
        @autoreleasepool {
            NSData* data = [NSData dataWithContentsOfFile:stringOf(path)];
            NSString* reason = nil;
            id value = [NSPropertyListSerialization propertyListFromData:data
                                                        mutabilityOption:NSPropertyListImmutable
                                                                  format:NULL
                                                        errorDescription:&reason];
            if (value && !reason)
                return std::make_shared<const PropertyList>(valueOf(value));
            error = reason ? textOf([reason description]) : "(null)";
#ifdef __APPLE__
            // Apple's Foundation returns a description that the caller has to release.
            [reason release];
#endif
            return nullptr;
        }
    }
};

} // namespace

Files& springBoardFiles() {
    static auto& files = *new SpringBoardFiles;
    return files;
}

} // namespace noctara
