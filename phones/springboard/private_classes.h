/// Classes of the phone that no public header declares, as far as they are used here. SpringBoard's
/// own classes are looked up by name: a declaration types their methods and needs no linking.
#pragma once

#import <CoreLocation/CoreLocation.h>
#import <Foundation/Foundation.h>
#import <UIKit/UIKit.h>

@interface SBUIController : NSObject
+ (SBUIController*)sharedInstance;
- (BOOL)isOnAC;
@end

@interface SBTelephonyManager : NSObject
+ (SBTelephonyManager*)sharedTelephonyManager;
- (BOOL)isInAirplaneMode;
- (void)setIsInAirplaneMode:(BOOL)airplane;
- (void)updateAirplaneMode;
- (BOOL)inCall;
- (BOOL)outgoingCallExists;
- (BOOL)incomingCallExists;
- (BOOL)activeCallExists;
- (BOOL)isNetworkTethering;
@end

@interface SBWiFiManager : NSObject
+ (SBWiFiManager*)sharedInstance;
- (BOOL)isPowered;
- (BOOL)wiFiEnabled;
- (void)setWiFiEnabled:(BOOL)enabled;
@end

/// An application, or the home screen.
@interface SBApplication : NSObject
- (NSString*)displayIdentifier;
- (NSString*)displayName;
- (id)process;
- (void)activate;
- (void)resumeToQuit;
- (void)kill;
@end

@interface SBApplicationController : NSObject
+ (SBApplicationController*)sharedInstance;
- (NSArray*)allApplications;
- (SBApplication*)springBoard;
@end

@interface SBIcon : NSObject
- (void)launch;
@end

@interface SBIconModel : NSObject
+ (SBIconModel*)sharedInstance;
- (SBIcon*)leafIconForIdentifier:(NSString*)identifier;
- (SBIcon*)iconForDisplayIdentifier:(NSString*)identifier;
@end

@interface UIApplication (FrontMost)
- (SBApplication*)_accessibilityFrontMostApplication;
@end

/// Nil on a system that lacks it, as is every answer of it then.
__attribute__((weak_import))
@interface BluetoothManager : NSObject
+ (BluetoothManager*)sharedInstance;
- (BOOL)enabled;
- (BOOL)connected;
- (void)setPowered:(BOOL)powered;
- (void)setEnabled:(BOOL)enabled;
@end

@interface CLLocationManager (SystemWide)
+ (void)setLocationServicesEnabled:(BOOL)enabled;
@end
