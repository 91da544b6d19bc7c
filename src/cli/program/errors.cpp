// SPDX-License-Identifier: Apache-2.0
#include "cli/program/errors.h"

#include <fmt/format.h>

#include <iostream>

#include "desk/refusal.h"

namespace kv::cli {

int endingOf(const std::function<int()>& program) {
  try {
    return program();
  } catch (const UsageError& e) {
    std::cerr << "kvvesk: " << e.what() << '\n';
    return kUsage;
  } catch (const desk::WrongInput& e) {
    std::cerr << "kvvesk: " << e.description() << '\n';
    return kUsage;
  } catch (const Error& e) {
    std::cerr << fmt::format("error {} ({}): {}\n", e.number(), e.source(), e.description());
    return kRefused;
  } catch (const std::exception& e) {
    std::cerr << "kvvesk: " << e.what() << '\n';
    return kRefused;
  }
}

}  // namespace kv::cli
