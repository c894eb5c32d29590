#pragma once

#include <string>

namespace vx::test {

// The package.json that the wizard's default fields give, under the name and
// uid given, as the desktop host reads it.
inline std::string PackageDescriptionText(const std::string& name = "My App",
                                          const std::string& uid = "com.example.myapp") {
    return "{\n  \"name\":\"" + name + "\",\n  \"uid\":\"" + uid + R"(",
  "version":"1.0",
  "company":"http:\/\/www.example.com",
  "main":"index.html",
  "window":{
    "title":"My App",
    "width":600.0,
    "height":600.0
  }
})";
}

}  // namespace vx::test
