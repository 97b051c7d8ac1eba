#include <ZelvoraSDK/backend/interpret.h>

#include <algorithm>
#include <boost/regex.hpp>
#include <charconv>
#include <cstddef>
#include <locale>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

namespace {

std::string interpretBody(const InterpretQuery& query) {
  return jsonObject([&](JsonWriter& out) {
    out.member("locale", query.locale);
    out.member("text", query.text);
    out.member("spec", query.spec);
    out.key("context");
    out.object([](JsonWriter& context) {
      context.member("platform", kBackendPlatform);
      context.member("sdk_version", ZelvoraKit::version);
    });
  });
}

std::optional<RouteResponse> decodedRouteResponse(std::string_view body) {
  try {
    return decodeJson<RouteResponse>(body);
  } catch (const Error&) {
    return std::nullopt;
  }
}

/// The task with the id; when no task has it, the one with that screen.
const ZelvoraTaskSpec* findTask(const std::vector<ZelvoraTaskSpec>& tasks, std::string_view id) {
  auto found = std::ranges::find(tasks, id, &ZelvoraTaskSpec::taskId);
  if (found == tasks.end()) found = std::ranges::find(tasks, id, &ZelvoraTaskSpec::screenId);
  return found == tasks.end() ? nullptr : &*found;
}

ZelvoraUnsupported leadsNowhere(const RouteResponse& response) {
  return {response.say.value_or(kNothingMatchedSay)};
}

ZelvoraResult executedResult(const RouteResponse& response,
                             const std::vector<ZelvoraTaskSpec>& tasks) {
  const std::string taskId =
      response.task ? response.task->id : response.screenId.value_or("unknown");
  const std::optional<double> confidence =
      response.task ? std::optional(response.task->confidence) : std::nullopt;
  const Params params = response.params.value_or(Params{});
  const std::string say = response.say.value_or(kDoneSay);

  const ZelvoraTaskSpec* task = findTask(tasks, taskId);
  if (const auto presentation = task ? task->presentation() : std::nullopt)
    return ZelvoraPresent{*presentation, params, say, confidence, taskId};
  if (response.screenId && !isBlank(*response.screenId))
    return ZelvoraExecute{*response.screenId, params, say, confidence, taskId};
  return leadsNowhere(response);
}

ZelvoraResult offeredResult(const RouteResponse& response) {
  ZelvoraShowChoices offer{response.say.value_or(kPickOneSay), {}};
  for (const RouteResponse::Choice& choice : *response.choices)
    offer.choices.push_back(
        {choice.task_id, choice.title, choice.confidence, choice.screenId, choice.params});
  return offer;
}

}  // namespace

UrlRequest interpretRequest(const Url& baseURL, const InterpretQuery& query) {
  UrlRequest request = postJson(baseURL, "/api/interpret", interpretBody(query));
  request.headers.push_back({"Authorization", bearerAuthorization(query.accessToken)});
  return request;
}

RouteResponse readInterpretAnswer(const UrlResponse& answer) {
  const int status = routingStatus(answer);
  if (!isSuccess(status)) failRouting(status, "HTTP error: " + bodyText(answer));
  if (answer.body.empty())
    failRouting(status, "Empty response body from /api/interpret (status " +
                            std::to_string(status) + "). Backend must return JSON RouteResponse.");

  if (auto decoded = decodedRouteResponse(answer.body)) return *std::move(decoded);
  const std::string text = bodyText(answer);
  if (auto fallback = readTextAnswer(text)) return *std::move(fallback);
  failRouting(status, "Failed to decode /api/interpret JSON (status " + std::to_string(status) +
                          "). Body: " + text);
}

ZelvoraResult interpretedResult(const RouteResponse& response,
                                const std::vector<ZelvoraTaskSpec>& tasks) {
  if (response.mode == "execute") return executedResult(response, tasks);
  if (response.mode == "show_choices" && response.choices) return offeredResult(response);
  return leadsNowhere(response);
}

namespace {

// The expressions match bytes. They run over a shadow of the text of the same length, in which each
// byte of a character beyond ASCII says what kind of character it belongs to.
constexpr char kForeignWordByte = '\xFF';
constexpr char kForeignOtherByte = '\xFE';

/// ASCII's character classes with `kForeignWordByte` as a letter, in any locale of the process.
class ShadowClasses : public std::ctype<char> {
 public:
  ShadowClasses() : std::ctype<char>(table()) {}

 private:
  static const mask* table() {
    static const auto classes = [] {
      struct {
        mask of[table_size];
      } copy{};
      std::copy_n(classic_table(), table_size, copy.of);
      copy.of[static_cast<unsigned char>(kForeignWordByte)] = alpha;
      return copy;
    }();
    return classes.of;
  }
};

char shadowByte(char32_t codePoint) {
  if (isWhiteSpace(codePoint)) return ' ';
  return isLetter(codePoint) || isNumber(codePoint) ? kForeignWordByte : kForeignOtherByte;
}

std::string shadowOf(std::string_view text) {
  std::string shadow;
  shadow.reserve(text.size());
  while (!text.empty()) {
    const DecodedCodePoint next = firstCodePoint(text);
    if (next.value < 0x80)
      shadow += text.front();
    else
      shadow.append(next.length, shadowByte(next.value));
    text.remove_prefix(next.length);
  }
  return shadow;
}

boost::regex compiled(const char* pattern) {
  boost::regex expression;
  expression.imbue(std::locale(std::locale::classic(), new ShadowClasses));
  expression.assign(pattern);
  return expression;
}

const boost::regex& idPattern() {
  static const boost::regex pattern =
      compiled(R"((?:\b(?:id|screenId|screen_id)\b)\s*[:=]\s*([A-Za-z0-9._-]+))");
  return pattern;
}

/// The blanks around the optional sign are written so that only one way of matching them exists:
/// with `\s*[:=]?\s*` a long run of blanks would cost the square of its length.
const boost::regex& percentagePattern() {
  static const boost::regex pattern =
      compiled(R"((?:\bconfidence\b)\s*(?:[:=]\s*)?([0-9]{1,3})\s*%)");
  return pattern;
}

const boost::regex& decimalPattern() {
  static const boost::regex pattern = compiled(R"((?:\bconfidence\b)\s*[:=]\s*([0-9]*\.?[0-9]+))");
  return pattern;
}

const boost::regex& sayPattern() {
  static const boost::regex pattern = compiled(R"re((?:\bsay\b)\s*[:=]\s*"([^"]+)")re");
  return pattern;
}

struct ShadowedText {
  std::string_view text;
  std::string shadow;

  explicit ShadowedText(std::string_view original) : text(original), shadow(shadowOf(original)) {}

  [[nodiscard]] std::optional<std::string_view> firstCapture(const boost::regex& pattern) const {
    boost::smatch match;
    if (!boost::regex_search(shadow, match, pattern)) return std::nullopt;
    return text.substr(static_cast<std::size_t>(match.position(1)),
                       static_cast<std::size_t>(match.length(1)));
  }
};

/// The number, at most `limit`. `digits` holds digits and at most one point.
double cappedNumber(std::string_view digits, double limit) {
  double number = 0;
  const auto [end, problem] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (problem != std::errc::result_out_of_range) return std::min(number, limit);
  const bool huge = digits.substr(0, digits.find('.')).find_first_not_of('0') != digits.npos;
  return huge ? limit : 0;
}

double readConfidence(const ShadowedText& answer) {
  if (const auto percentage = answer.firstCapture(percentagePattern()))
    return cappedNumber(*percentage, 100) / 100;
  if (const auto decimal = answer.firstCapture(decimalPattern())) return cappedNumber(*decimal, 1);
  return 1;
}

}  // namespace

std::optional<RouteResponse> readTextAnswer(std::string_view text) {
  const ShadowedText answer(trimmed(text));
  const auto id = answer.firstCapture(idPattern());
  if (!id) return std::nullopt;

  RouteResponse response;
  response.mode = "execute";
  response.task = RouteResponse::Task{std::string(*id), readConfidence(answer)};
  response.say = answer.firstCapture(sayPattern()).value_or(kDoneSay);
  response.screenId = *id;
  response.params.emplace();
  return response;
}

}  // namespace zelvora
