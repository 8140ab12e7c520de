#import <Foundation/Foundation.h>

#include <notify.h>

namespace {

struct Listener {
    NSString* text;
};

[[gnu::constructor]] void listenFromTheFrame() {
    Listener listener{@"heard"};
    Listener* volatile place = &listener;
    Listener* const captured = place;
    int token = 0;
    notify_register_dispatch("com.quorbit.Noctara.preferences-changed", &token,
                             dispatch_get_main_queue(), ^(int) {
                               NSLog(@"%@", captured->text);
                             });
}

} // namespace
