#include "shell/routed_form.h"

#include "core/text.h"

namespace tallwick {

void RoutedForm::AddRoutes(std::initializer_list<std::string_view> commands) {
  for (std::string_view command : commands) {
    const ScreenRoute& route = *FindRoute(command);
    Add(ControlKind::kMenu, std::string(command), std::string(route.caption)).enabled =
        session_.MayUse(route.right);
  }
}

bool RoutedForm::GoTo(std::string_view command) {
  const ScreenRoute* route = FindRoute(command);
  if (route == nullptr || opener_ == nullptr) return false;
  if (opener_->Offers(route->screen, route->mode)) {
    opener_->OpenScreen(route->screen, route->of_file ? ToUpper(CurrentFile()) : std::string(route->mode));
    return true;
  }
  std::string name = WithoutMnemonic(At(command).caption);
  if (name.ends_with("...")) name.resize(name.size() - 3);
  Boxes().Inform(Caption(), Quoted(name) + " is not part of this version of the program.");
  return true;
}

}  // namespace tallwick
