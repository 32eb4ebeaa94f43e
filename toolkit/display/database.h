// The X resource database of a display. Inside the toolkit only.
#pragma once

#include <X11/Intrinsic.h>
#include <string>

class zDatabase {
  public:
    explicit zDatabase(Display* display);

    // The value that a widget below the program's shell would get for these names and classes, as in
    // "plain.fontSize" and "Rendition.FontSize"; empty: none is set.
    std::string value(const std::string& names, const std::string& classes) const;
    // The address of that value in the database; null: none is set. One line of resources that counts for
    // two names gives both the same address.
    const char* entry(const std::string& names, const std::string& classes) const;

    // Sets what stands after the program's class: "*plain*fontSize".
    void put(const std::string& specifier, const std::string& value);
    // Sets it for everything below the program's shell with these names, as "plain.fontSize", also where a
    // class has been given a value.
    void force(const std::string& names, const std::string& value);
    // Hides what anybody has set there. `type` is what the resource's texts are converted to.
    void withhold(const std::string& names, const char* type);

  private:
    Display* display_;
    XrmDatabase database_;
    String name_ = nullptr, class_ = nullptr;
};
