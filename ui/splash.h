// The picture shown while the program starts.
#pragma once

#include <QSplashScreen>
#include <memory>

namespace tallwick {

// In the colours of the application's palette; not yet shown.
std::unique_ptr<QSplashScreen> MakeSplash();

}  // namespace tallwick
