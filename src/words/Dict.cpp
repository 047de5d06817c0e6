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

bool Dict::noticeChanges() {
  const bool english = en().noticeChange();
  const bool russian = ru().noticeChange();
  return english || russian;
}

void Dict::askAnew() {
  en().askAnew();
  ru().askAnew();
}

}  // namespace tessarok
