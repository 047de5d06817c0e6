#include "words/Dict.h"

namespace tessarok {

const DictFile& Dict::en() {
  static const DictFile dictionary("dict_en");
  return dictionary;
}

const DictFile& Dict::ru() {
  static const DictFile dictionary("dict_ru");
  return dictionary;
}

}  // namespace tessarok
