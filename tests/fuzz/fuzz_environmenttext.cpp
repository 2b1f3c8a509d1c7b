// A text of environment variables as UTF-16 units, which need not be characters, against a plain reading of
// it.
#include <cstdlib>

#include "shell/configuration/parameters/EnvironmentText.h"
#include "support/EnvironmentModel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf16(reinterpret_cast<const char16_t*>(data), int(size / 2));
    const EnvironmentText::Parsed parsed = EnvironmentText::parse(text);
    const TestSupport::EnvironmentModel expected(text);
    if (parsed.values != expected.values || parsed.error != expected.badName)
        std::abort();
    QJsonObject envs;
    for (auto it = parsed.values.begin(); it != parsed.values.end(); ++it)
        envs.insert(it.key(), it.value());
    EnvironmentText::parse(EnvironmentText::write(envs));
    return 0;
}
