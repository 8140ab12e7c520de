#include "platform/applications.h"

#include "phones/springboard/application_objects.h"
#include "phones/springboard/private_classes.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#include <map>

namespace noctara {

namespace {

std::optional<std::string> textIfAny(NSString* string) {
    return string ? std::optional(textOf(string)) : std::nullopt;
}

class SpringBoardApplication final : public Application {
public:
    explicit SpringBoardApplication(SBApplication* ofHost) : application(ofHost) {}

    std::optional<std::string> displayIdentifier() override {
        @autoreleasepool {
            return textIfAny([application displayIdentifier]);
        }
    }

    std::optional<std::string> displayName() override {
        @autoreleasepool {
            return textIfAny([application displayName]);
        }
    }

    bool hasProcess() override {
        @autoreleasepool {
            return [application process] != nil;
        }
    }

    void activate() override { [application activate]; }
    void resumeToQuit() override { [application resumeToQuit]; }
    void kill() override { [application kill]; }

    SBApplication* const application; ///< Not retained.
};

class SpringBoardIcon final : public Icon {
public:
    void launch() override { [icon launch]; }

    SBIcon* icon = nil; ///< Not retained.
};

class SpringBoardApplications final : public Applications,
                                      private ApplicationController,
                                      private IconModel {
public:
    ApplicationController* sharedController(ClassRef controllerClass) override {
        controller = (SBApplicationController*)[static_cast<Class>(controllerClass) sharedInstance];
        return controller ? this : nullptr;
    }

    IconModel* sharedIconModel(ClassRef modelClass) override {
        icons = (SBIconModel*)[static_cast<Class>(modelClass) sharedInstance];
        return icons ? this : nullptr;
    }

    bool respondsToFrontMostApplication() override {
        return [[UIApplication sharedApplication]
            respondsToSelector:@selector(_accessibilityFrontMostApplication)];
    }

    Application* frontMostApplication() override {
        return applicationOf(
            [[UIApplication sharedApplication] _accessibilityFrontMostApplication]);
    }

private:
    void allApplications(const std::function<void(Application&)>& visit) override {
        @autoreleasepool {
            for (SBApplication* application in [controller allApplications])
                visit(*applicationOf(application));
        }
    }

    Application* springBoard() override {
        return [controller respondsToSelector:@selector(springBoard)]
                   ? applicationOf([controller springBoard])
                   : nullptr;
    }

    bool respondsToLeafIconForIdentifier() override {
        return [icons respondsToSelector:@selector(leafIconForIdentifier:)];
    }

    Icon* leafIconForIdentifier(const std::string& identifier) override {
        return iconOf([icons leafIconForIdentifier:stringOf(identifier)]);
    }

    Icon* iconForDisplayIdentifier(const std::string& identifier) override {
        return iconOf([icons iconForDisplayIdentifier:stringOf(identifier)]);
    }

    Icon* iconOf(SBIcon* found) {
        lastIcon.icon = found;
        return found ? &lastIcon : nullptr;
    }

    SBApplicationController* controller = nil;
    SBIconModel* icons = nil;
    SpringBoardIcon lastIcon;
};

} // namespace

Application* applicationOf(SBApplication* object) {
    // One for each object. It holds only the object's address and does not send to it by itself.
    static auto& known = *new std::map<SBApplication*, SpringBoardApplication>;
    return object ? &known.try_emplace(object, object).first->second : nullptr;
}

SBApplication* objectOf(Application* application) {
    return application ? static_cast<SpringBoardApplication*>(application)->application : nil;
}

Applications& springBoardApplications() {
    static auto& applications = *new SpringBoardApplications;
    return applications;
}

} // namespace noctara
