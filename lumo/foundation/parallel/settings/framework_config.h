/// Descriptions of parallel frameworks: what the user chooses, saves and prints.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/foundation/parallel/settings/framework_setting.h"

namespace lumo {

/// One framework and its settings.
class ParallelFrameworkConfig {
 public:
    virtual ~ParallelFrameworkConfig() = default;
    virtual const char* name() const = 0;  ///< the word of configuration files and of the command line
    virtual const char* display_name() const = 0;
    virtual std::unique_ptr<BasicParallelizer> make_parallelizer() const = 0;
    virtual std::unique_ptr<ParallelFrameworkConfig> clone() const = 0;

    /// Adds the `Framework` key and the settings to the object.
    void to_cfg(Config::Object& object) const;
    /// The same for the eye: numbers with their formatted text beside them.
    void to_display_cfg(Config::Object& object) const;
    /// Takes the settings that the object has; the others keep their values.
    void load(const Config::Object& object);

    /// "Push Pool  ->  8 / 16  (randomization on)": threads, then tasks; a task count of 0 prints as "?".
    std::string summary_string(upL_t threads, upL_t task_decomposition = 0) const;
    void print_summary(upL_t threads, upL_t task_decomposition = 0) const;
    /// Prints a row for each setting, numbered from `line`; returns the next number.
    upL_t print_settings(upL_t line) const;
    /// Changes the setting with this number (from 0), asking on the console where an answer is needed.
    void menu_action(upL_t option);

    FrameworkValues values;

 protected:
    /// In the order of files and menus.
    virtual std::span<const FrameworkSetting* const> settings() const = 0;
    virtual std::string summary_suffix() const { return {}; }

 private:
    void add_settings(Config::Object& object, bool for_display) const;
};

}  // namespace lumo
