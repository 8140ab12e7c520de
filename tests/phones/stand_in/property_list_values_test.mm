/// Conversion of values from Foundation to the core and back.
#include "phones/springboard/property_list_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace noctara {

namespace {

class FoundationValues : public testing::Test {
protected:
    ~FoundationValues() override { [pool release]; }

    /// The file that the monitor writes when it saves one setting of this file.
    static NSDictionary* withOneKeySaved(NSDictionary* file) {
        Dictionary dictionary = dictionaryOf(file);
        dictionary.set("saved", 7);
        return objectOf(dictionary);
    }

    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
};

TEST_F(FoundationValues, are_the_same_objects_again_when_one_key_is_saved) {
    NSDictionary* file = [NSDictionary
        dictionaryWithObjectsAndKeys:
            [NSNumber numberWithUnsignedLongLong:std::numeric_limits<std::uint64_t>::max()],
            @"unsigned", [NSNumber numberWithFloat:0.1F], @"single",
            [NSNumber numberWithDouble:-0.0], @"minus zero", [NSNumber numberWithChar:5], @"char",
            [NSDecimalNumber decimalNumberWithString:@"0.1"], @"decimal", [NSNull null], @"null",
            [NSURL URLWithString:@"http://example.com"], @"no value of a property list",
            [NSDate dateWithTimeIntervalSince1970:0.25], @"date",
            [NSArray arrayWithObject:[NSNumber numberWithDouble:-0.0]], @"inside", nil];
    NSDictionary* written = withOneKeySaved(file);
    EXPECT_EQ([written count], [file count] + 1);
    for (NSString* key in file)
        EXPECT_EQ([written objectForKey:key], [file objectForKey:key]) << textOf(key);
    EXPECT_EQ([[written objectForKey:@"saved"] intValue], 7);
}

TEST_F(FoundationValues, outlive_what_they_were_read_from) {
    Dictionary dictionary;
    {
        NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
        dictionary = dictionaryOf([NSDictionary
            dictionaryWithObject:[NSMutableString stringWithFormat:@"%d apples", 5]
                          forKey:@"text"]);
        [inner release];
    }
    EXPECT_EQ(textOf([objectOf(dictionary) objectForKey:@"text"]), "5 apples");
}

// GNUstep preserves less than the phone's Foundation. It reads an XML integer above 2^63 - 1 as
// 2^63 - 1. It writes a single-precision real with the digits of that precision only. It cannot
// read a dictionary from the path of a binary file.
TEST_F(FoundationValues, of_a_file_stay_as_they_were_when_one_key_is_saved) {
    NSData* file = [@"<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                    @"<plist version=\"1.0\"><dict>"
                    @"<key>least</key><integer>-9223372036854775808</integer>"
                    @"<key>minus zero</key><real>-0</real>"
                    @"<key>inside</key><array><real>-0</real><real>0.1</real></array>"
                    @"<key>date</key><date>2012-03-04T05:06:07Z</date>"
                    @"<key>truth</key><true/><key>one</key><integer>1</integer>"
                    @"</dict></plist>" dataUsingEncoding:NSUTF8StringEncoding];
    NSDictionary* read = [NSPropertyListSerialization propertyListFromData:file
                                                          mutabilityOption:NSPropertyListImmutable
                                                                    format:NULL
                                                          errorDescription:NULL];
    NSData* xml = [NSPropertyListSerialization dataFromPropertyList:withOneKeySaved(read)
                                                             format:NSPropertyListXMLFormat_v1_0
                                                   errorDescription:NULL];
    NSString* text = [[[NSString alloc] initWithData:xml
                                            encoding:NSUTF8StringEncoding] autorelease];
    for (const char* element :
         {"<integer>-9223372036854775808</integer>", "<key>minus zero</key>\n    <real>-0</real>",
          "<array>\n\t<real>-0</real>\n\t<real>0.1</real>", "<date>2012-03-04T05:06:07Z</date>",
          "<true/>", "<integer>1</integer>", "<key>saved</key>\n    <integer>7</integer>"})
        EXPECT_THAT(textOf(text), testing::HasSubstr(element));
}

} // namespace

} // namespace noctara
