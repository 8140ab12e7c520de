/// UIKit's device and application objects.
#pragma once

#import <Foundation/Foundation.h>

@interface UIDevice : NSObject
+ (UIDevice*)currentDevice;
- (NSInteger)userInterfaceIdiom;
@end

@interface UIApplication : NSObject
/// The first application object that was made in the process.
+ (UIApplication*)sharedApplication;
@end
