// SPDX-License-Identifier: Apache-2.0
// A member of an interface as a call of the library's member: arguments converted, the result
// given, what is raised reported.
#pragma once

#include <cstddef>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "com/argument.h"
#include "com/com_error.h"

namespace kv::com {

// Chooses one of several members of a name by its declaration.
template <class Declaration, class T>
constexpr auto as(Declaration T::*member) noexcept {
  return member;
}

template <class Member>
struct Signature;
template <class T, class R, class... P>
struct Signature<R (T::*)(P...)> {
  using Result = R;
  template <std::size_t Place>
  using Parameter = std::tuple_element_t<Place, std::tuple<P...>>;
  static constexpr std::size_t count = sizeof...(P);
};
template <class T, class R, class... P>
struct Signature<R (T::*)(P...) const> : Signature<R (T::*)(P...)> {};
template <class T, class R, class... P>
struct Signature<R (T::*)(P...) noexcept> : Signature<R (T::*)(P...)> {};
template <class T, class R, class... P>
struct Signature<R (T::*)(P...) const noexcept> : Signature<R (T::*)(P...)> {};

template <class T, class Member, class Given, std::size_t... Place>
void callMember(T& object, Member member, const Given& given, std::index_sequence<Place...>) {
  using Called = Signature<Member>;
  std::tuple<
      Argument<typename Called::template Parameter<Place>, std::tuple_element_t<Place, Given>>...>
      arguments{std::get<Place>(given)...};
  const auto writeBack = [&arguments] { (std::get<Place>(arguments).writeBack(), ...); };
  try {
    if constexpr (std::is_void_v<typename Called::Result>)
      std::invoke(member, object, std::get<Place>(arguments).get()...);
    else
      give(std::invoke(member, object, std::get<Place>(arguments).get()...),
           &pointed(std::get<sizeof...(Place)>(given)));
  } catch (...) {
    writeBack();
    throw;
  }
  writeBack();
}

// `given` are the arguments and, for a member with a result, the place for that.
template <class T, class Member, class... Raw>
[[nodiscard]] HRESULT callOn(T& object, Member member, Raw... given) noexcept {
  using Called = Signature<Member>;
  static_assert(sizeof...(Raw) == Called::count + !std::is_void_v<typename Called::Result>,
                "the member takes another number of arguments");
  return guarded([&] {
    callMember(object, member, std::tuple<Raw...>(given...),
               std::make_index_sequence<Called::count>());
  });
}

}  // namespace kv::com
