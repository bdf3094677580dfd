// Sets environment variables for one test and puts the old values back.
#pragma once

#include <cstdlib>
#include <ctime>
#include <map>
#include <optional>
#include <string>

class EnvGuard {
public:
    // A null value unsets the variable. The time zone is re-read each time.
    void Set(const char* name, const char* value) {
        if (!saved_.count(name)) {
            const char* old = std::getenv(name);
            saved_[name] = old ? std::optional<std::string>(old) : std::nullopt;
        }
        Apply(name, value);
    }
    ~EnvGuard() {
        for (const auto& [name, old] : saved_) Apply(name.c_str(), old ? old->c_str() : nullptr);
    }

private:
    static void Apply(const char* name, const char* value) {
        if (value) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
        tzset();
    }
    std::map<std::string, std::optional<std::string>> saved_;
};
