/// UIKit's device and application objects.
#pragma once

#import <Foundation/Foundation.h>

typedef NSInteger UIUserInterfaceIdiom;

@interface UIDevice : NSObject
+ (UIDevice*)currentDevice;
- (UIUserInterfaceIdiom)userInterfaceIdiom;
@end

@interface UIApplication : NSObject
/// The first application object that was made in the process.
+ (UIApplication*)sharedApplication;
@end
