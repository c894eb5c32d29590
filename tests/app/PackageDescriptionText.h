#pragma once

#include <string>

namespace vx::test {

// The package.json that the wizard's default fields give, under the name and
// uid given, as the desktop host reads it.
inline std::string PackageDescriptionText(const std::string& name = "My App",
                                          const std::string& uid = "com.example.myapp") {
    return "{\n"
           "  \"name\":\"" +
           name +
           "\",\n"
           "  \"uid\":\"" +
           uid +
           "\",\n"
           "  \"version\":\"1.0\",\n"
           "  \"company\":\"http:\\/\\/www.example.com\",\n"
           "  \"main\":\"index.html\",\n"
           "  \"window\":{\n"
           "    \"title\":\"My App\",\n"
           "    \"width\":600.0,\n"
           "    \"height\":600.0\n"
           "  }\n"
           "}";
}

}  // namespace vx::test
