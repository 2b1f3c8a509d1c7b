#pragma once

namespace Fenk {
class Application;
}

/// Tells the application what the About box shows: version, icon, name, description and the agreement's link.
void nameProduct(Fenk::Application& application);
