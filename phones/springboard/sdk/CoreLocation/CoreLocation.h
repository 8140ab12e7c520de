/// CoreLocation's switch of location services.
#pragma once

#import <Foundation/Foundation.h>

@interface CLLocationManager : NSObject
+ (BOOL)locationServicesEnabled;
@end
